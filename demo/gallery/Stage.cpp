#include "Stage.h"

#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>

#include "Exhibits.h"
#include "app/view/TitleBar.h"
#include "ui/InkPanel.h"
#include "ui/VerticalScroller.h"

namespace gallery {

namespace {

constexpr int around = 36;  // of the scene
constexpr vantor::InkPanelStyle panelStyle{.opacity = 0.96, .margin = 14, .tear = 5, .seed = 7};

QWidget* makeExhibits(QWidget* parent) {
    auto* const whole = new QWidget(parent);
    auto* const column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 8, 0);
    auto* const title = new vantor::TitleBar([] {}, whole);
    title->setTexts(QStringLiteral("Gallery"), QStringLiteral("[\u2318 + \u21E7 + T]"));
    column->addWidget(title);
    column->addWidget(makeStates(whole));
    column->addWidget(makeTogether(whole));
    return whole;
}

}  // namespace

Stage::Stage(game::Scene scene, Extent extent) : scene_(scene) {
    setWindowTitle(QStringLiteral("Vantor gallery"));
    auto* const column = new QVBoxLayout(this);
    const int inset = around + panelStyle.margin + 20;
    column->setContentsMargins(inset, inset, inset, inset);
    if (extent == Extent::whole) {
        column->addWidget(makeExhibits(this));
        column->setSizeConstraint(QLayout::SetNoConstraint);
    } else {
        auto* const scroller = new vantor::VerticalScroller(this);
        scroller->setContent(makeExhibits(scroller));
        column->addWidget(scroller);
    }
}

void Stage::paintEvent(QPaintEvent*) {
    if (background_.deviceIndependentSize().toSize() != size() ||
        background_.devicePixelRatio() != devicePixelRatioF()) {
        background_ = QPixmap(size() * devicePixelRatioF());
        background_.setDevicePixelRatio(devicePixelRatioF());
        QPainter painter(&background_);
        game::drawScene(painter, rect(), scene_);
        const QSize panel = size() - QSize(2 * around, 2 * around);
        painter.drawPixmap(around, around, vantor::drawInkPanel(panel, devicePixelRatioF(), panelStyle));
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, background_);
}

}  // namespace gallery
