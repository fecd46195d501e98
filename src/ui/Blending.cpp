#include "ui/Blending.h"

#include <QtCore/QVariant>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>

namespace vantor {

namespace {

constexpr const char* notBlending = "vantorNotBlending";
// Between the shadows, which go, and the faintest panel.
constexpr int solid = 128;

// A mask without a point would be none at all.
const QRegion nothing(-1, -1, 1, 1);

QRegion solidPartOf(QWidget& window, QWidget::RenderFlags parts) {
    QImage picture(window.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    window.render(&picture, {}, {}, parts | QWidget::IgnoreMask);
    QRegion region;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const int start = x;
            while (x < picture.width() && qAlpha(line[x]) >= solid) ++x;
            if (x > start) region += QRect(start, y, x - start, 1);
        }
    }
    return region;
}

}  // namespace

QEvent::Type blendingChanged() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

bool isBlending() { return !qApp->property(notBlending).toBool(); }

void setBlending(bool blends) {
    if (blends == isBlending()) return;
    qApp->setProperty(notBlending, !blends);
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        QEvent changed(blendingChanged());
        QCoreApplication::sendEvent(window, &changed);
    }
}

void cutToSolidPart(QWidget& window, QWidget::RenderFlags parts) {
    if (isBlending()) {
        if (!window.mask().isEmpty()) window.clearMask();
        return;
    }
    const QRegion region = solidPartOf(window, parts);
    window.setMask(region.isEmpty() ? nothing : region);
}

}  // namespace vantor
