#include "app/view/TitleBar.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <utility>

#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr QSize strokeSize(560, 52);
constexpr int textLeft = 46;
constexpr int gap = 16;

// Draws the text on the base line and returns where the next one begins.
int drawOnLine(QPainter& painter, int left, int baseLine, const QFont& font, const QColor& colour,
               const QString& text) {
    painter.setFont(font);
    painter.setPen(palette::withAlpha(Qt::black, 0.6));
    painter.drawText(left + 1, baseLine + 1, text);
    painter.setPen(colour);
    painter.drawText(left, baseLine, text);
    return left + QFontMetrics(font).horizontalAdvance(text) + gap;
}

}  // namespace

TitleBar::TitleBar(std::function<void()> close, QWidget* parent)
    : QWidget(parent),
      close_(
          new ImageButton(QStringLiteral("close"), QStringLiteral("close.selected"), QStringLiteral("Close"), this)) {
    setAttribute(Qt::WA_Hover);
    setFixedHeight(withText(strokeSize.height()));
    close_->setGround(QStringLiteral("close.bg"));
    connect(close_, &QAbstractButton::clicked, this, std::move(close));
}

void TitleBar::setTexts(const QString& title, const QString& hint, const QString& hintWords) {
    setToolTip(hintWords.isEmpty() ? QString() : hintWords + QStringLiteral(" opens and closes Vantor"));
    if (title == title_ && hint == hint_) return;
    title_ = title;
    hint_ = hint;
    setAccessibleName(QStringLiteral("Vantor ") + title_ + QLatin1Char(' ') + hint_);
    update();
}

void TitleBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QString stroke = underMouse() ? QStringLiteral("title.bg.selected") : QStringLiteral("title.bg");
    painter.drawPixmap(0, 0, image(stroke, {withText(strokeSize.width()), height()}, devicePixelRatioF()));
    const int baseLine = (height() + withText(18)) / 2;
    int left = drawOnLine(painter, textLeft, baseLine, serifFont(27), palette::gold, QStringLiteral("Vantor"));
    left = drawOnLine(painter, left, baseLine, serifFont(20), palette::warmWhite, title_);
    // Where there is no room for all, the hint is what can be missed.
    if (left + QFontMetrics(sansFont(13)).horizontalAdvance(hint_) > close_->x()) return;
    drawOnLine(painter, left - 2, baseLine - 1, sansFont(13), palette::withAlpha(palette::warmWhite, 0.85), hint_);
}

void TitleBar::resizeEvent(QResizeEvent*) {
    close_->move(width() - close_->width() - 22, (height() - close_->height()) / 2);
}

}  // namespace vantor
