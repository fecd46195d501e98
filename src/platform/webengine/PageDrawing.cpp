#include "platform/webengine/PageDrawing.h"

#include <QtCore/QChildEvent>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtGui/QResizeEvent>
#include <QtQuick/QQuickPaintedItem>
#include <QtQuick/QQuickWindow>
#include <QtQuickWidgets/QQuickWidget>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineWidgets/QWebEngineView>

namespace vantor {

namespace {

constexpr qreal depth = 18;
constexpr int darkest = 150;  // of 255, at the very edge
constexpr qreal overThePage = 1;

class EdgeFades final : public QQuickPaintedItem {
public:
    static constexpr QLatin1String name{"fades"};

    explicit EdgeFades(QQuickItem* scene) : QQuickPaintedItem(scene) {
        setObjectName(name);
        setZ(overThePage);
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

QQuickItem* fadesOf(const QQuickWidget& drawing) {
    return drawing.quickWindow()->contentItem()->findChild<QQuickItem*>(EdgeFades::name, Qt::FindDirectChildrenOnly);
}

}  // namespace

PageDrawings::PageDrawings(QWebEngineView& view) : QObject(&view) { view.installEventFilter(this); }

bool PageDrawings::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ChildAdded && watched == parent()) {
        // The engine's own class has no header; what it is made of has.
        if (auto* const drawing = qobject_cast<QQuickWidget*>(static_cast<QChildEvent*>(event)->child()))
            prepare(*drawing);
    } else if (event->type() == QEvent::Resize && watched != parent()) {
        fadesOf(static_cast<QQuickWidget&>(*watched))->setSize(static_cast<QResizeEvent*>(event)->size());
    }
    return false;
}

void PageDrawings::prepare(QQuickWidget& drawing) {
    // A layout may take out a drawing and put it back.
    if (fadesOf(drawing)) return;
    // It is white until the page's process tells of its ground, which a busy machine lets be seen. Set as the engine
    // does then: a transparent drawing is blended over all that lies below.
    const QColor ground = static_cast<QWebEngineView*>(parent())->page()->backgroundColor();
    const bool isTransparent = ground.alpha() < 255;
    drawing.setClearColor(ground);
    drawing.setAttribute(Qt::WA_AlwaysStackOnTop, isTransparent);
    drawing.setAttribute(Qt::WA_OpaquePaintEvent, !isTransparent);
    (new EdgeFades(drawing.quickWindow()->contentItem()))->setSize(drawing.size());
    drawing.installEventFilter(this);
}

}  // namespace vantor
