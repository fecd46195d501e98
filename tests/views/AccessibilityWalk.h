#pragma once
// Walks what a screen reader meets in a window. Main thread.

#include <QtCore/QString>
#include <QtGui/QAccessible>
#include <QtWidgets/QWidget>
#include <vector>

namespace vantor {

[[nodiscard]] inline bool isInteractive(QAccessibleInterface& node) {
    switch (node.role()) {
        case QAccessible::Button:
        case QAccessible::ButtonMenu:
        case QAccessible::CheckBox:
        case QAccessible::RadioButton:
        case QAccessible::ComboBox:
        case QAccessible::EditableText:
        case QAccessible::Slider:
        case QAccessible::SpinBox:
        case QAccessible::PageTab:
        case QAccessible::Link:
        case QAccessible::ListItem:
        case QAccessible::MenuItem:
            return true;
        default:
            // Whatever else the keyboard reaches, such as a row that is a plain widget to the toolkit.
            return node.state().focusable && node.object() && node.object()->isWidgetType() &&
                   !static_cast<QWidget*>(node.object())->isWindow();
    }
}

struct AccessibilityWalk {
    int interactive = 0;
    // The class and place of each interactive node without a name.
    std::vector<QString> unnamed;
};

inline void walkAccessibility(QAccessibleInterface* node, const QString& path, AccessibilityWalk& walk) {
    if (!node || !node->isValid() || node->state().invisible) return;
    const QString kind =
        node->object() ? QString::fromLatin1(node->object()->metaObject()->className()) : QStringLiteral("part");
    const QString here =
        path + QLatin1Char('/') + kind + QStringLiteral(" as ") + QString::number(static_cast<int>(node->role()), 16);
    if (isInteractive(*node)) {
        ++walk.interactive;
        if (node->text(QAccessible::Name).trimmed().isEmpty()) walk.unnamed.push_back(here);
    }
    for (int i = 0; i < node->childCount(); ++i) walkAccessibility(node->child(i), here, walk);
}

// The widget and all that is shown in it.
[[nodiscard]] inline AccessibilityWalk walkAccessibility(QWidget& root) {
    AccessibilityWalk walk;
    walkAccessibility(QAccessible::queryAccessibleInterface(&root), QString(), walk);
    return walk;
}

}  // namespace vantor
