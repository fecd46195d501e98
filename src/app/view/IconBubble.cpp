#include "app/view/IconBubble.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <array>
#include <utility>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int tip = 8;
constexpr int tipMiddle = 16;  // from the top: where the icon's middle is
constexpr int side = 12;

struct Line {
    QString text;
    QFont font;
    QColor colour;
};

std::array<Line, 3> lines() {
    return {{{QStringLiteral("A click on the icon opens Vantor."), sansFont(14), palette::gold},
             {QStringLiteral("Its right button has the menu."), sansFont(14), palette::warmWhite},
             {QStringLiteral("Click here to put this away."), sansFont(12), palette::sand}}};
}

}  // namespace

IconBubble::IconBubble(std::function<void()> pressed, Prepare prepare)
    : OverlayWindow({.focus = Focus::never}, std::move(prepare)), pressed_(std::move(pressed)) {
    describeControls();
    setWindowTitle(QStringLiteral("Vantor hint"));
    QString spoken;
    QSize size(0, side);
    for (const Line& line : lines()) {
        const QFontMetrics metrics(line.font);
        size = {std::max(size.width(), metrics.horizontalAdvance(line.text)), size.height() + metrics.height() + 2};
        spoken += line.text + QLatin1Char(' ');
    }
    setAccessibleName(spoken.trimmed());
    setCursor(Qt::PointingHandCursor);
    setFixedSize(size.width() + tip + 2 * side, size.height() + side);
}

void IconBubble::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath box;
    box.addRoundedRect(QRectF(rect()).adjusted(tip + 0.5, 0.5, -0.5, -0.5), 5, 5);
    QPainterPath arrow(QPointF(0.5, tipMiddle));
    arrow.lineTo(tip + 1, tipMiddle - tip);
    arrow.lineTo(tip + 1, tipMiddle + tip);
    arrow.closeSubpath();
    painter.setPen(QPen(palette::withAlpha(palette::gold, 0.5), 1));
    painter.setBrush(palette::withAlpha(palette::inkTop, 0.96));
    painter.drawPath(box.united(arrow));
    int top = side;
    for (const Line& line : lines()) {
        const int height = QFontMetrics(line.font).height();
        painter.setFont(line.font);
        painter.setPen(line.colour);
        painter.drawText(QRect(tip + side, top, width(), height), Qt::AlignVCenter | Qt::AlignLeft, line.text);
        top += height + 2;
    }
}

void IconBubble::mouseReleaseEvent(QMouseEvent* event) {
    if (rect().contains(event->position().toPoint())) pressed_();
}

}  // namespace vantor
