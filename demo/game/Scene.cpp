#include "Scene.h"

#include <QtGui/QPainterPath>
#include <cmath>

namespace game {
namespace {

struct Palette {
    QColor skyTop, skyBottom, light, far, middle, near, detail;
};

const Palette& paletteOf(Scene scene) {
    static const Palette bright{QColor(0x7f, 0xc4, 0xf2), QColor(0xff, 0xf4, 0xd2), QColor(0xff, 0xff, 0xf4),
                                QColor(0xb9, 0xcf, 0xdd), QColor(0x9c, 0xc0, 0x78), QColor(0xe8, 0xdd, 0x9a),
                                QColor(0xff, 0xff, 0xff)};
    static const Palette dark{QColor(0x10, 0x18, 0x2a), QColor(0x2c, 0x3a, 0x55), QColor(0xc8, 0xd4, 0xee),
                              QColor(0x17, 0x20, 0x33), QColor(0x0f, 0x17, 0x22), QColor(0x08, 0x0c, 0x12),
                              QColor(0xff, 0xc8, 0x6a)};
    return scene == Scene::bright ? bright : dark;
}

// Fixed sums of waves: the same hills in every picture.
void drawHills(QPainter& painter, const QRect& area, double level, double height, double phase, const QColor& colour) {
    QPainterPath hills(QPointF(area.left(), area.bottom() + 1));
    for (int x = area.left(); x <= area.right() + 8; x += 8) {
        const double at = x * 0.006 + phase;
        const double wave = std::sin(at) * 0.55 + std::sin(at * 2.7 + phase) * 0.3 + std::sin(at * 7.1) * 0.08;
        hills.lineTo(x, area.top() + area.height() * (level - wave * height));
    }
    hills.lineTo(area.right() + 8, area.bottom() + 1);
    painter.fillPath(hills, colour);
}

}  // namespace

void drawScene(QPainter& painter, const QRect& area, Scene scene) {
    const auto& palette = paletteOf(scene);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(area.topLeft(), area.bottomLeft());
    sky.setColorAt(0, palette.skyTop);
    sky.setColorAt(0.75, palette.skyBottom);
    painter.fillRect(area, sky);

    const QPointF sun(area.left() + area.width() * 0.72, area.top() + area.height() * 0.22);
    const double reach = area.height() * 0.35;
    QRadialGradient glow(sun, reach);
    auto edge = palette.light;
    glow.setColorAt(0.14, edge);
    edge.setAlpha(90);
    glow.setColorAt(0.17, edge);
    edge.setAlpha(0);
    glow.setColorAt(1, edge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawEllipse(sun, reach, reach);

    drawHills(painter, area, 0.55, 0.16, 0.4, palette.far);
    drawHills(painter, area, 0.70, 0.10, 2.2, palette.middle);
    drawHills(painter, area, 0.88, 0.05, 4.1, palette.near);
    painter.setBrush(palette.detail);
    for (int at = 0; at < 60; ++at) {
        const double x = std::fmod(at * 0.381966, 1.0);
        const double y =
            scene == Scene::dark ? std::fmod(at * 0.723, 1.0) * 0.4 : 0.76 + std::fmod(at * 0.519, 1.0) * 0.22;
        painter.drawEllipse(QPointF(area.left() + x * area.width(), area.top() + y * area.height()), 1.6, 1.6);
    }
}

}  // namespace game
