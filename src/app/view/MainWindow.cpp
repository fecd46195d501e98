#include "app/view/MainWindow.h"

#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "app/view/ContentView.h"
#include "ui/Fonts.h"
#include "ui/InkPanel.h"

namespace vantor {

namespace {

constexpr QSize leastSize(720, 460);
constexpr int screenMargin = 40;
constexpr InkPanelStyle panelStyle{.opacity = 0.96, .margin = 14, .tear = 5, .seed = 7};

}  // namespace

MainWindow::MainWindow(AppObserver& appObserver, const ViewNeeds& needs, WatchedFeed& watched, Prepare prepare)
    : OverlayWindow({.focus = Focus::onClick, .movable = true, .resizable = true}, std::move(prepare)) {
    setWindowTitle(QStringLiteral("Vantor"));
    // Larger text needs more room, as far as the screen has it.
    const QSize most = screen()->availableSize() - QSize(screenMargin, screenMargin);
    setMinimumSize(
        QSize(withText(leastSize.width()), withText(leastSize.height())).boundedTo(most).expandedTo(leastSize));
    auto* const layout = new QVBoxLayout(this);
    // The brush stroke reaches over the torn left edge; everything else stays inside the panel.
    layout->setContentsMargins(panelStyle.margin - 4, panelStyle.margin + 8, panelStyle.margin + 6,
                               panelStyle.margin + 8);
    auto* const content = new ContentView(appObserver, needs, watched, this);
    layout->addWidget(content);
    // Else the first control would get the keyboard with a click on the background, unseen, and a Space meant for the
    // game would press it: the close button.
    content->setFocus();
}

void MainWindow::paintEvent(QPaintEvent*) {
    if (panel_.deviceIndependentSize().toSize() != size() || panel_.devicePixelRatio() != devicePixelRatioF())
        panel_ = drawInkPanel(size(), devicePixelRatioF(), panelStyle);
    QPainter painter(this);
    painter.drawPixmap(0, 0, panel_);
}

}  // namespace vantor
