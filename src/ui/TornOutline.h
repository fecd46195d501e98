#pragma once
// Outlines with torn edges, the same at every call. Nine parts: the corners keep their shape at any size, the four
// edges run between them. Main thread.

#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

namespace vantor {

// The outline stays inside the frame; `depth` is how far a tear reaches in.
[[nodiscard]] QPainterPath tornOutline(const QRectF& frame, double depth, unsigned seed);

// 0 to 1, rough but steady along `place`.
[[nodiscard]] double roughness(unsigned seed, int place);

}  // namespace vantor
