#pragma once
// Backgrounds that scale as nine parts: corners keep their size, edges and the middle are tiled, nothing is stretched
// out of shape. Drawn once for a size and scale. Main thread.

#include <QtCore/QRect>
#include <QtCore/QString>
#include <QtGui/QPixmap>

class QPainter;

namespace vantor {

// The image holds the elements top-left, top, top-right, left, centre, right, bottom-left, bottom and bottom-right.
// Draws nothing when there is no such image.
void paintNineParts(QPainter& painter, const QString& name, const QRect& frame);
// The same as a picture, for what is too large to be kept among the small ones.
[[nodiscard]] QPixmap drawNineParts(const QString& name, QSize size, double devicePixelRatio);

}  // namespace vantor
