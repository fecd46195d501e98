#include "ui/AccessibleControl.h"

namespace vantor {

namespace {

QAccessibleInterface* describe(const QString&, QObject* object) {
    // The web engine's own objects carry no type information that could be asked; none of them is a widget.
    if (!object->isWidgetType()) return nullptr;
    // A widget in the middle of its destruction is no control any more, and this says so.
    auto* const control = dynamic_cast<SelfDescribing*>(object);
    return control ? control->makeAccessible() : nullptr;
}

}  // namespace

void describeControls() { QAccessible::installFactory(describe); }

QAccessible::State AccessibleButton::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = button().isDown();
    if (role() == QAccessible::CheckBox) {
        state.checkable = true;
        state.checked = button().isChecked();
    }
    if (role() == QAccessible::PageTab) {
        state.selectable = true;
        state.selected = button().isChecked();
    }
    return state;
}

QString AccessibleButton::text(QAccessible::Text kind) const {
    const QString given = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && given.isEmpty() ? button().text() : given;
}

QStringList AccessibleButton::actionNames() const {
    QStringList names;
    if (button().isEnabled())
        names << (role() == QAccessible::CheckBox ? QAccessibleActionInterface::toggleAction()
                                                  : QAccessibleActionInterface::pressAction());
    return names + QAccessibleWidget::actionNames();
}

void AccessibleButton::doAction(const QString& name) {
    if (!button().isEnabled()) return;
    if (name == QAccessibleActionInterface::toggleAction() || name == QAccessibleActionInterface::pressAction())
        return button().click();
    QAccessibleWidget::doAction(name);
}

QStringList AccessiblePressable::actionNames() const {
    return QStringList(QAccessibleActionInterface::pressAction()) + QAccessibleWidget::actionNames();
}

void AccessiblePressable::doAction(const QString& name) {
    if (name == QAccessibleActionInterface::pressAction()) return press_();
    QAccessibleWidget::doAction(name);
}

}  // namespace vantor
