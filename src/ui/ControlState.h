#pragma once
// How a control stands at the moment that it is painted, and how it shows it. Values; main thread.

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>

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

struct ControlState {
    bool hovered = false;
    double glow = 0;  // how far the hover has come, 0 to 1
    bool pressed = false;
    bool focused = false;  // by the keyboard: a click shows no ring
    bool enabled = true;
    bool checked = false;

    bool operator==(const ControlState&) const = default;

    [[nodiscard]] static ControlState of(const QWidget& control);
    [[nodiscard]] static ControlState of(const QAbstractButton& button);
};

// Marks whether a control got its focus by the keyboard; to be called from its focusInEvent and focusOutEvent.
void noteFocus(QWidget& control, const QFocusEvent& event);

}  // namespace vantor
