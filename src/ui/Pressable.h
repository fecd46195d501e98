#pragma once
// What all pressable controls share: the hand over them, a hover that comes and goes softly, the ring of a focus that
// came by the keyboard, Return besides Space, and a description for screen readers. Main thread.

#include <QtWidgets/QAbstractButton>

#include "ui/AccessibleControl.h"
#include "ui/ControlState.h"
#include "ui/Motion.h"

namespace vantor {

class Pressable : public QAbstractButton, public SelfDescribing {
public:
    explicit Pressable(QWidget* parent, QAccessible::Role role = QAccessible::Button);

    [[nodiscard]] QAccessibleInterface* makeAccessible() override { return new AccessibleButton(this, role_); }

protected:
    [[nodiscard]] ControlState state() const;
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QAccessible::Role role_;
    Motion glow_;
};

}  // namespace vantor
