#include "app/view/TypingLineView.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <chrono>
#include <utility>

#include "app/TypingLine.h"
#include "ui/Fonts.h"
#include "ui/InkPanel.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

const InkPanelStyle panelStyle{.opacity = 0.88, .margin = 6, .tear = 3, .seed = 5};
constexpr std::chrono::milliseconds betweenLooks{100};
constexpr int pixels = 14;
constexpr int sides = 20;
constexpr int above = 12;

QString lineText(std::size_t posted, std::size_t characters) {
    return QString::fromStdString(typingLineText(posted, characters));
}

}  // namespace

TypingLineView::TypingLineView(const ClipboardManager& clipboardManager, std::function<void(QSize)> fit,
                               QWidget* parent)
    : QWidget(parent), clipboardManager_(clipboardManager), fit_(std::move(fit)) {
    turns_.setInterval(betweenLooks);
    QObject::connect(&turns_, &QTimer::timeout, this, [this] { follow(); });
}

QSize TypingLineView::longest() {
    const QFontMetrics metrics(sansFont(pixels));
    return {metrics.horizontalAdvance(lineText(99999, 99999)) + 2 * sides, metrics.height() + 2 * above};
}

void TypingLineView::setFollowing(bool following) {
    if (!following) return turns_.stop();
    turns_.start();
    follow();
    fit_(longest());
}

void TypingLineView::follow() {
    const auto progress = clipboardManager_.progress();
    if (!progress) return;
    const QString text = lineText(progress->posted, progress->characters);
    if (std::exchange(text_, text) == text) return;
    setAccessibleName(text);
    update();
}

void TypingLineView::paintEvent(QPaintEvent*) {
    if (panel_.isNull() || panel_.deviceIndependentSize() != QSizeF(size()) ||
        panel_.devicePixelRatio() != devicePixelRatioF())
        panel_ = drawInkPanel(size(), devicePixelRatioF(), panelStyle);
    QPainter painter(this);
    painter.drawPixmap(0, 0, panel_);
    painter.setFont(sansFont(pixels));
    painter.setPen(palette::warmWhite);
    painter.drawText(rect(), Qt::AlignCenter, text_);
}

}  // namespace vantor
