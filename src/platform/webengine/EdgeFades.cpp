#include "platform/webengine/EdgeFades.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtQuick/QQuickPaintedItem>
#include <QtQuick/QQuickWindow>
#include <QtQuickWidgets/QQuickWidget>

namespace vantor {

namespace {

constexpr qreal depth = 14;
constexpr int darkest = 128;  // of 255, at the very edge
constexpr qreal overThePage = 1;

class EdgeFades final : public QQuickPaintedItem {
public:
    explicit EdgeFades(QQuickItem* scene) : QQuickPaintedItem(scene) {
        setZ(overThePage);
        const auto fit = [this, scene] { setSize(scene->size()); };
        QObject::connect(scene, &QQuickItem::widthChanged, this, fit);
        QObject::connect(scene, &QQuickItem::heightChanged, this, fit);
        fit();
    }

    void paint(QPainter* painter) override {
        const auto fade = [painter](QPointF from, QPointF to, const QRectF& area) {
            QLinearGradient gradient(from, to);
            gradient.setColorAt(0, QColor(0, 0, 0, darkest));
            gradient.setColorAt(0.4, QColor(0, 0, 0, darkest / 3));
            gradient.setColorAt(1, QColor(0, 0, 0, 0));
            painter->fillRect(area, gradient);
        };
        const qreal right = width();
        const qreal bottom = height();
        fade({0, 0}, {0, depth}, {0, 0, right, depth});
        fade({0, bottom}, {0, bottom - depth}, {0, bottom - depth, right, depth});
        fade({0, 0}, {depth, 0}, {0, 0, depth, bottom});
        fade({right, 0}, {right - depth, 0}, {right - depth, 0, depth, bottom});
    }
};

}  // namespace

void fadeEdges(QWidget& drawing) {
    // The engine's widget has no header of its own; what it is made of has.
    auto* const scene = qobject_cast<QQuickWidget*>(&drawing);
    if (scene && scene->quickWindow()) new EdgeFades(scene->quickWindow()->contentItem());
}

}  // namespace vantor
