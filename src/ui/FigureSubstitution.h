#pragma once
// Lining, tabular figures of a face: reads the face's own table of glyph substitutions, since the toolkit cannot ask
// for font features. Main thread.

#include <QtGui/QRawFont>

class QPainter;

namespace vantor {

// The glyph that the feature, such as "lnum", puts in place of this one; the same one where it changes nothing or the
// table is damaged. The table's form: OpenType, GSUB, single substitutions.
[[nodiscard]] quint32 substitutedGlyph(const QByteArray& table, const char* feature, quint32 glyph);

// One line of a time such as "20:45", ending at `right` on the base line, in the painter's pen.
void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text);

}  // namespace vantor
