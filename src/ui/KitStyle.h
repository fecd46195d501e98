#pragma once
// What the toolkit itself draws, in the look of the kit: tool tips, menus, frames, and the colours of anything that
// brings none of its own. Main thread.

#include <QtGui/QPalette>

namespace vantor {

// The colours of the toolkit's own widgets.
[[nodiscard]] QPalette kitColours();

// Once, with the application object and before the first window; after registerFonts(). Also takes the desktop's text
// size over.
void styleApplication();

}  // namespace vantor
