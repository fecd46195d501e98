#include "ui/Pressable.h"

#include <QtGui/QKeyEvent>

namespace vantor {

Pressable::Pressable(QWidget* parent, QAccessible::Role role)
    : QAbstractButton(parent), role_(role), glow_(this, springs::quick, [this](double) { update(); }) {
    describeControls();
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

ControlState Pressable::state() const {
    ControlState state = ControlState::of(*this);
    if (underMouse() || glow_.moving()) state.glow = glow_.value();
    return state;
}

bool Pressable::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::Enter:
            if (isEnabled()) glow_.moveTo(1);
            break;
        case QEvent::Leave:
            glow_.moveTo(0);
            break;
        case QEvent::Hide:
        case QEvent::EnabledChange:
            glow_.jumpTo(isEnabled() && isVisible() && underMouse() ? 1 : 0);
            break;
        default:
            break;
    }
    return QAbstractButton::event(event);
}

void Pressable::focusInEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QAbstractButton::focusInEvent(event);
}

void Pressable::focusOutEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QAbstractButton::focusOutEvent(event);
}

// The toolkit's buttons know only Space.
void Pressable::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return click();
    QAbstractButton::keyPressEvent(event);
}

}  // namespace vantor
