#pragma once
// What a screen reader hears of the drawn controls. A control that is drawn by hand is a nameless widget to the
// toolkit, so it describes itself. Main thread.

#include <QtGui/QAccessible>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAccessibleWidget>
#include <functional>
#include <utility>

namespace vantor {

// A widget that brings its own description. Its constructor calls describeControls().
class SelfDescribing {
public:
    virtual ~SelfDescribing() = default;
    // The toolkit owns what it gets.
    [[nodiscard]] virtual QAccessibleInterface* makeAccessible() = 0;
};

// Makes the toolkit ask self-describing widgets; again and again is the same as once.
void describeControls();

// What can be pressed: a button, a tab, or a check box, with its state and its action.
class AccessibleButton : public QAccessibleWidget {
public:
    AccessibleButton(QAbstractButton* button, QAccessible::Role role) : QAccessibleWidget(button, role) {}

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

protected:
    [[nodiscard]] QAbstractButton& button() const { return *static_cast<QAbstractButton*>(widget()); }
};

// A widget that is no button of the toolkit's and can still be pressed.
class AccessiblePressable : public QAccessibleWidget {
public:
    AccessiblePressable(QWidget* widget, std::function<void()> press)
        : QAccessibleWidget(widget, QAccessible::Button), press_(std::move(press)) {}

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    std::function<void()> press_;
};

}  // namespace vantor
