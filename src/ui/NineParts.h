#pragma once
// Backgrounds that scale as nine parts: corners keep their size, edges and the middle are tiled, nothing is stretched
// out of shape. Drawn once for a size and scale. Main thread.

#include <QtCore/QRect>
#include <QtCore/QString>

class QPainter;

namespace vantor {

// The image holds the elements top-left, top, top-right, left, centre, right, bottom-left, bottom and bottom-right.
// Draws nothing when there is no such image.
void paintNineParts(QPainter& painter, const QString& name, const QRect& frame);

}  // namespace vantor
