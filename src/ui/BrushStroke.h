#pragma once
// The red brush stroke behind a title: full at the left, thinning out after two thirds. Main thread.

#include <QtCore/QRectF>

class QPainter;

namespace vantor {

// `lit`: the brighter stroke of a hovered title.
void paintBrushStroke(QPainter& painter, const QRectF& frame, bool lit);

}  // namespace vantor
