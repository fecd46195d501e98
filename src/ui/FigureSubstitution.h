#pragma once
// Lining, tabular figures of a face. The toolkit cannot ask a face for them, so the face is told before it is registered
// that they are what it always sets. Main thread.

#include <QtCore/QByteArray>
#include <QtCore/QPointF>
#include <QtCore/QString>

class QFont;
class QPainter;

namespace vantor {

// The face with its features "lnum" and "tnum" under names that every text is set with; the same bytes where it has no
// such features or is damaged. The form: OpenType, the feature list of the table GSUB.
[[nodiscard]] QByteArray withLiningFigures(QByteArray face);

// One line of a time such as "20:45", ending at `right` on the base line, in the painter's pen.
void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text);

}  // namespace vantor
