#pragma once
// Every control of the visual kit in every state, in rows of one control each. Main thread.

#include <QtWidgets/QWidget>

namespace gallery {

// Controls by state: the columns are rest, hover, pressed, focused, disabled, checked and a long text.
[[nodiscard]] QWidget* makeStates(QWidget* parent);

// Controls in use: tabbers, collapses, insets, the text roles and an empty place.
[[nodiscard]] QWidget* makeTogether(QWidget* parent);

}  // namespace gallery
