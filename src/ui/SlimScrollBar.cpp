#include "ui/SlimScrollBar.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionSlider>

#include "ui/Palette.h"

namespace vantor {

SlimScrollBar::SlimScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) { setAttribute(Qt::WA_Hover); }

QSize SlimScrollBar::sizeHint() const { return {12, QScrollBar::sizeHint().height()}; }

void SlimScrollBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect track = rect().adjusted(5, 4, -2, -4);
    painter.fillRect(track, QColor(0, 0, 0, 110));
    const int range = maximum() - minimum();
    if (range <= 0) return;
    const int length = std::max(28, track.height() * pageStep() / (range + pageStep()));
    const int top = track.top() + (track.height() - length) * (value() - minimum()) / range;
    const double strength = isSliderDown() ? 0.75 : underMouse() ? 0.6 : 0.42;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::withAlpha(palette::gold, strength));
    painter.drawRoundedRect(QRect(track.left(), top, track.width(), length), 2, 2);
}

}  // namespace vantor
