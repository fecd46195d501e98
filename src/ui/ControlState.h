#pragma once
// How a control stands at the moment that it is painted. Values; main thread.

#include <QtWidgets/QAbstractButton>

namespace vantor {

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
