#include "ui/ControlState.h"

#include <QtCore/QVariant>
#include <QtGui/QFocusEvent>

namespace vantor {

namespace {

constexpr const char* byKeyboard = "focusByKeyboard";
// For pictures: a list of the states to show, such as "hovered", whatever the pointer and the keyboard do.
constexpr const char* shown = "controlState";

bool shows(const QWidget& control, const QString& state) {
    const QVariant states = control.property(shown);
    return states.isValid() && states.toStringList().contains(state);
}

}  // namespace

ControlState ControlState::of(const QWidget& control) {
    const bool hovered = (control.isEnabled() && control.underMouse()) || shows(control, QStringLiteral("hovered"));
    return {.hovered = hovered,
            .glow = hovered ? 1.0 : 0.0,
            .pressed = shows(control, QStringLiteral("pressed")),
            .focused = (control.hasFocus() && control.property(byKeyboard).toBool()) ||
                       shows(control, QStringLiteral("focused")),
            .enabled = control.isEnabled()};
}

ControlState ControlState::of(const QAbstractButton& button) {
    ControlState state = of(static_cast<const QWidget&>(button));
    state.pressed = state.pressed || button.isDown();
    state.checked = button.isChecked();
    return state;
}

void noteFocus(QWidget& control, const QFocusEvent& event) {
    const Qt::FocusReason reason = event.reason();
    control.setProperty(byKeyboard,
                        event.gotFocus() && (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                                             reason == Qt::ShortcutFocusReason));
    control.update();
}

}  // namespace vantor
