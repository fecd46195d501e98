#pragma once
// Which tab a key leads to. Pure; main thread.

#include <QtGui/QKeyEvent>
#include <optional>

namespace vantor {

// Arrows along the tabs, and their ends with Home and End. Nothing: the key is not theirs, or leads nowhere.
[[nodiscard]] inline std::optional<int> nextTab(const QKeyEvent& event, Qt::Orientation tabs, int selected, int count) {
    const bool column = tabs == Qt::Vertical;
    int next = selected;
    if (event.key() == (column ? Qt::Key_Up : Qt::Key_Left)) --next;
    if (event.key() == (column ? Qt::Key_Down : Qt::Key_Right)) ++next;
    if (event.key() == Qt::Key_Home) next = 0;
    if (event.key() == Qt::Key_End) next = count - 1;
    if (next < 0 || next >= count || next == selected) return std::nullopt;
    return next;
}

}  // namespace vantor
