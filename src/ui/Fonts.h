#pragma once
// The embedded text faces: a bookish serif for titles and times, a humanist sans for text. Main thread, after the
// application object.

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtGui/QFont>

class QPainter;

namespace vantor {

enum class FontsVerdict { embedded, fallback };

// Once, before the first window. Without the embedded files the system's serif and sans stand in.
FontsVerdict registerFonts();

// How much larger than drawn the player reads: 1 to 2. Kept with the application object; what was made before keeps its
// size, so it is set before the first window.
void setTextScale(double scale);
[[nodiscard]] double textScale();
// What a desktop's own font asks for; 11 points, which desktops start with, and less ask for nothing.
[[nodiscard]] double textScaleFor(const QFont& desktopFont);
// A length that belongs to text, such as an icon's beside it or a row's.
[[nodiscard]] int withText(int pixels);

// In pixels at the text scale of 1.
[[nodiscard]] QFont serifFont(int pixels);
[[nodiscard]] QFont sansFont(int pixels, bool bold = false);
// The system's colour emoji, with the sans face for what it lacks. They are pictures: the text scale leaves them.
[[nodiscard]] QFont emojiFont(int pixels);

// One line of a time such as "20:45", ending at `right` on the base line, in the painter's pen.
void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text);

}  // namespace vantor
