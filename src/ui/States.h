#pragma once
// How a control shows that it is hovered, pressed or focused. Main thread.

#include <QtGui/QPainter>

#include "ui/Palette.h"

namespace vantor {

// `glow`: how far the hover has come, 0 to 1.
inline void paintHover(QPainter& painter, const QRectF& frame, double glow = 1) {
    painter.fillRect(frame, palette::withAlpha(palette::gold, 0.07 * glow));
}

// 1 px of gold, drawn 2 px outside the control's own frame.
inline void paintFocusRing(QPainter& painter, const QRectF& frame) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette::gold, 1));
    painter.drawRoundedRect(frame.adjusted(-1.5, -1.5, 1.5, 1.5), 4, 4);
    painter.restore();
}

}  // namespace vantor
