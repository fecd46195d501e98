#include "ui/GW2TextFieldStyle.h"

#include <QtGui/QLinearGradient>

#include "ui/GW2ButtonStyle.h"
#include "ui/Palette.h"
#include "ui/States.h"

namespace vantor {

void GW2TextFieldStyle::paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inside = frame.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(palette::withAlpha(palette::gold, state.hovered ? 0.5 : 0.28), 1));
    painter.setBrush(palette::fieldInk);
    painter.drawRoundedRect(inside, 3, 3);
    // Light from above: the upper edge lies in the shadow.
    QLinearGradient shadow(inside.topLeft(), inside.topLeft() + QPointF(0, 6));
    shadow.setColorAt(0, palette::withAlpha(Qt::black, 0.6));
    shadow.setColorAt(1, palette::withAlpha(Qt::black, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(shadow);
    painter.drawRoundedRect(inside.adjusted(1, 1, -1, -1), 2, 2);
    painter.restore();
    if (state.focused) paintFocusRing(painter, frame);
}

QPalette GW2TextFieldStyle::colours() {
    QPalette colours;
    colours.setColor(QPalette::Text, palette::warmWhite);
    colours.setColor(QPalette::PlaceholderText, palette::dim);
    colours.setColor(QPalette::Base, QColor(0, 0, 0, 0));
    colours.setColor(QPalette::Window, QColor(0, 0, 0, 0));
    colours.setColor(QPalette::Highlight, palette::strokeLight);
    colours.setColor(QPalette::HighlightedText, palette::onRed);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::PlaceholderText})
        colours.setColor(QPalette::Disabled, role,
                         palette::withAlpha(colours.color(QPalette::Active, role), disabledOpacity));
    return colours;
}

}  // namespace vantor
