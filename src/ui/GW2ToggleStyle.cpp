#include "ui/GW2ToggleStyle.h"

#include <QtGui/QRadialGradient>
#include <algorithm>

#include "ui/Fonts.h"
#include "ui/Palette.h"
#include "ui/States.h"

namespace vantor {

QSize GW2ToggleStyle::size() { return {withText(38), withText(20)}; }

void GW2ToggleStyle::paint(QPainter& painter, const QRectF& frame, const ControlState& state, double position) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = frame.adjusted(0.5, 1.5, -0.5, -1.5);
    const double round = track.height() / 2;
    painter.setPen(QPen(palette::between(QColor(0x6E, 0x66, 0x58), palette::gold.darker(135), position), 1));
    painter.setBrush(palette::between(QColor(0x12, 0x0E, 0x0B), palette::strokeLight, position));
    painter.drawRoundedRect(track, round, round);
    if (state.glow > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, 0.1 * state.glow));
        painter.drawRoundedRect(track, round, round);
    }
    const double knob = track.height() - 5;
    const double travel = track.width() - knob - 5;
    const QRectF place(track.left() + 2.5 + travel * position, track.top() + 2.5 + (state.pressed ? 0.5 : 0), knob,
                       knob);
    const QColor face = palette::between(palette::dim, palette::gold, position);
    QRadialGradient light(place.center() - QPointF(0, knob / 4), knob);
    light.setColorAt(0, face.lighter(112));
    light.setColorAt(1, face.darker(140));
    painter.setPen(QPen(QColor(0x12, 0x0E, 0x0B), 1));
    painter.setBrush(light);
    painter.drawEllipse(place);
    painter.restore();
    if (state.focused) paintFocusRing(painter, frame);
}

}  // namespace vantor
