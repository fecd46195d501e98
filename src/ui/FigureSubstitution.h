#pragma once
// What is changed in an embedded face before it is registered: lining, tabular figures, which the toolkit cannot ask a
// face for, and a family name of its own. Main thread.

#include <QtCore/QByteArray>
#include <QtCore/QPointF>
#include <QtCore/QString>

class QFont;
class QPainter;

namespace vantor {

// The face with its features "lnum" and "tnum" under names that every text is set with; the same bytes where it has no
// such features or is damaged. The form: OpenType, the feature list of the table GSUB.
[[nodiscard]] QByteArray withLiningFigures(QByteArray face);

// The face under another family name, cut or filled up to the length of its own, so that no table moves.
[[nodiscard]] QByteArray withFamilyName(QByteArray face, const QString& family);

// One line of a time such as "20:45", ending at `right` on the base line, in the painter's pen.
void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text);

}  // namespace vantor
