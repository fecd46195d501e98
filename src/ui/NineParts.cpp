#include "ui/NineParts.h"

#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtSvg/QSvgRenderer>
#include <algorithm>
#include <cmath>

namespace vantor {

namespace {

constexpr double step = 32;  // the torn lines come back to the same depth after this length

// How a length is filled, in device pixels: with whole tiles, the last one cut.
struct Course {
    long length;
    long tile;
};

Course course(double length, double tile, double ratio) {
    const long whole = std::lround(length * ratio);
    // A piece shorter than a step holds straight lines only: one piece, drawn out.
    if (tile < step) return {whole, whole};
    const double steps = std::max(1.0, std::round(length / step));
    return {whole, std::max(1L, std::lround(tile * (length / (step * steps)) * ratio))};
}

class NineParts {
public:
    NineParts(QSvgRenderer& renderer, QPainter& painter, QSize size, double ratio)
        : renderer_(renderer), painter_(painter), size_(size), ratio_(ratio) {
        corner_ = renderer_.boundsOnElement(QStringLiteral("top-left")).size();
        middle_ = renderer_.boundsOnElement(QStringLiteral("centre")).size();
    }

    void draw() {
        const long left = std::lround(corner_.width() * ratio_);
        const long top = std::lround(corner_.height() * ratio_);
        const long wide = std::lround(size_.width() * ratio_) - 2 * left;
        const long high = std::lround(size_.height() * ratio_) - 2 * top;
        const Course across = course(static_cast<double>(wide) / ratio_, middle_.width(), ratio_);
        const Course down = course(static_cast<double>(high) / ratio_, middle_.height(), ratio_);
        // Across an edge there is nothing to fill.
        const Course thickness{left, left};
        const Course depth{top, top};
        fill("centre", left, top, across, down);
        fill("top", left, 0, across, depth);
        fill("bottom", left, top + high, across, depth);
        fill("left", 0, top, thickness, down);
        fill("right", left + wide, top, thickness, down);
        one("top-left", 0, 0, left, top);
        one("top-right", left + wide, 0, left, top);
        one("bottom-left", 0, top + high, left, top);
        one("bottom-right", left + wide, top + high, left, top);
    }

private:
    void fill(const char* id, long x, long y, const Course& across, const Course& down) {
        if (across.length <= 0 || down.length <= 0) return;
        painter_.save();
        painter_.setClipRect(QRectF(static_cast<double>(x), static_cast<double>(y), static_cast<double>(across.length),
                                    static_cast<double>(down.length)));
        for (long row = 0; row < down.length; row += down.tile)
            for (long column = 0; column < across.length; column += across.tile)
                one(id, x + column, y + row, across.tile, down.tile);
        painter_.restore();
    }
    void one(const char* id, long x, long y, long width, long height) {
        renderer_.render(&painter_, QString::fromLatin1(id),
                         QRectF(static_cast<double>(x), static_cast<double>(y), static_cast<double>(width),
                                static_cast<double>(height)));
    }

    QSvgRenderer& renderer_;
    QPainter& painter_;
    QSizeF size_;
    double ratio_;
    QSizeF corner_;
    QSizeF middle_;
};

}  // namespace

QPixmap drawNineParts(const QString& name, QSize size, double devicePixelRatio) {
    QPixmap picture(size * devicePixelRatio);
    picture.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/images/") + name + QStringLiteral(".svg"));
    if (renderer.isValid()) {
        QPainter drawing(&picture);
        NineParts(renderer, drawing, size, devicePixelRatio).draw();
    }
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

void paintNineParts(QPainter& painter, const QString& name, const QRect& frame) {
    const double ratio = painter.device()->devicePixelRatioF();
    const QString key = QStringLiteral("nine %1 %2x%3@%4").arg(name).arg(frame.width()).arg(frame.height()).arg(ratio);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = drawNineParts(name, frame.size(), ratio);
        QPixmapCache::insert(key, picture);
    }
    painter.drawPixmap(frame.topLeft(), picture);
}

}  // namespace vantor
