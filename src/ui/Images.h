#pragma once
// The embedded vector images by their names, such as "home.selected". Main thread.

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QPixmap>

namespace vantor {

// Drawn once for a size and scale, then kept. Empty (transparent) when there is no such image.
[[nodiscard]] QPixmap image(const QString& name, QSize size, double devicePixelRatio);

}  // namespace vantor
