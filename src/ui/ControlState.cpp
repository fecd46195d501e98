#include "ui/ControlState.h"

#include <QtCore/QVariant>
#include <QtGui/QFocusEvent>

namespace vantor {

namespace {

constexpr const char* byKeyboard = "focusByKeyboard";

}  // namespace

ControlState ControlState::of(const QWidget& control) {
    return {.hovered = control.isEnabled() && control.underMouse(),
            .focused = control.hasFocus() && control.property(byKeyboard).toBool(),
            .enabled = control.isEnabled()};
}

ControlState ControlState::of(const QAbstractButton& button) {
    ControlState state = of(static_cast<const QWidget&>(button));
    state.pressed = button.isDown();
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
