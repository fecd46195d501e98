#pragma once
// The embedded text faces: a bookish serif for titles and times, a humanist sans for text. Main thread, after the
// application object.

#include <QtGui/QFont>

namespace vantor {

enum class FontsVerdict { embedded, fallback };

// Once, before the first window. Without the embedded files the system's serif and sans stand in.
FontsVerdict registerFonts();

[[nodiscard]] QFont serifFont(int pixels);
[[nodiscard]] QFont sansFont(int pixels, bool bold = false);

}  // namespace vantor
