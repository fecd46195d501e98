#include "ui/GW2ButtonStyle.h"

#include <QtGui/QLinearGradient>

#include "ui/Palette.h"
#include "ui/States.h"
#include "ui/TornOutline.h"

namespace vantor {

namespace {

struct Background {
    QColor top;
    QColor bottom;
    QColor edge;
};

Background backgroundOf(GW2ButtonStyle::Kind kind, const ControlState& state) {
    using Kind = GW2ButtonStyle::Kind;
    if (kind == Kind::primary) {
        if (state.pressed) return {palette::strokeDark.darker(125), palette::strokeDark, palette::line};
        return {palette::strokeLight, palette::strokeDark, palette::withAlpha(palette::gold, 0.45)};
    }
    if (kind == Kind::quiet) {
        const QColor clear(0, 0, 0, 0);
        if (state.pressed) return {palette::withAlpha(Qt::black, 0.35), palette::withAlpha(Qt::black, 0.35), clear};
        return {clear, clear, clear};
    }
    if (state.pressed) return {QColor(0x10, 0x0C, 0x0A), QColor(0x17, 0x12, 0x0E), palette::line};
    return {QColor(0x33, 0x2A, 0x21), QColor(0x22, 0x1B, 0x15), palette::withAlpha(palette::gold, 0.34)};
}

}  // namespace

void GW2ButtonStyle::paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const {
    const Background background = backgroundOf(kind_, state);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inside = frame.adjusted(0.5, 0.5, -0.5, -0.5);
    const QPainterPath outline = tornOutline(inside, 1.2, 23);
    QLinearGradient fill(inside.topLeft(), inside.bottomLeft());
    fill.setColorAt(0, background.top);
    fill.setColorAt(1, background.bottom);
    painter.setPen(QPen(background.edge, 1));
    painter.setBrush(fill);
    painter.drawPath(outline);
    if (state.glow > 0 && !state.pressed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, (kind_ == Kind::primary ? 0.12 : 0.07) * state.glow));
        painter.drawPath(outline);
    }
    painter.restore();
    if (state.focused) paintFocusRing(painter, frame);
}

QColor GW2ButtonStyle::textColour(const ControlState& state) const {
    if (kind_ == Kind::primary) return palette::onRed;
    return palette::between(palette::warmWhite, palette::gold, state.pressed ? 1 : state.glow);
}

}  // namespace vantor
