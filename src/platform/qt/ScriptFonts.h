#pragma once
// The fonts of the game's scripts: from the program's resources (fonts/scripts) and from a folder of the player's. None
// is shipped. Main thread, after the application object.

#include <QtCore/QString>

namespace vantor {

// Below the user's data folder: "vantor/fonts".
[[nodiscard]] QString scriptFontFolder();
// Registers every font file of both places; a file that is no font is passed over. Once.
void registerScriptFonts();
// Whether a family of this name can be drawn with, installed fonts included.
[[nodiscard]] bool hasFontFamily(const QString& family);

}  // namespace vantor
