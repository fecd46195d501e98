#pragma once
// The ink panel behind everything: soft shadow, dark background with a horizontal grain, torn edges with a hairline of
// gold. Drawn once for a size and then only copied. Main thread.

#include <QtCore/QSize>
#include <QtGui/QPixmap>

namespace vantor {

struct InkPanelStyle {
    double opacity = 0.96;
    int margin = 12;  // room for the shadow around the panel
    double tear = 5;
    unsigned seed = 7;
};

[[nodiscard]] QPixmap drawInkPanel(QSize size, double devicePixelRatio, const InkPanelStyle& style);

}  // namespace vantor
