#include "ui/InkPanel.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>

#include "ui/Palette.h"
#include "ui/TornOutline.h"

namespace vantor {

namespace {

// Rounded frames over each other, so that it thins out evenly to nothing at the window's edge.
void drawShadow(QPainter& painter, const QRectF& frame, int margin) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 8));
    for (int reach = 1; reach < margin; ++reach) {
        const double side = reach;
        painter.drawRoundedRect(frame.adjusted(-side, -side / 2, side, side), reach + 6, reach + 6);
    }
}

// Short horizontal strokes, lighter and darker than the background by a breath.
void drawGrain(QPainter& painter, const QRectF& frame) {
    const int strokes = static_cast<int>(frame.width() * frame.height() / 420);
    for (int index = 0; index < strokes; ++index) {
        const double x = frame.left() + roughness(31, index) * frame.width();
        const double y = frame.top() + roughness(32, index) * frame.height();
        const double length = 24 + 110 * roughness(33, index);
        const bool light = roughness(34, index) > 0.45;
        const double strength = (light ? 0.022 : 0.05) * roughness(35, index);
        QLinearGradient fade(x, y, x + length, y);
        const QColor colour = light ? palette::warmWhite : QColor(Qt::black);
        fade.setColorAt(0, palette::withAlpha(colour, 0));
        fade.setColorAt(0.5, palette::withAlpha(colour, strength));
        fade.setColorAt(1, palette::withAlpha(colour, 0));
        painter.fillRect(QRectF(x, y, length, 1 + 3 * roughness(36, index)), fade);
    }
}

}  // namespace

QPixmap drawInkPanel(QSize size, double devicePixelRatio, const InkPanelStyle& style) {
    QPixmap panel(size * devicePixelRatio);
    panel.setDevicePixelRatio(devicePixelRatio);
    panel.fill(Qt::transparent);
    const QRectF frame =
        QRectF(QPointF(), QSizeF(size)).adjusted(style.margin, style.margin, -style.margin, -style.margin);
    if (frame.isEmpty()) return panel;

    const QPainterPath outline = tornOutline(frame, style.tear, style.seed);
    QPainter painter(&panel);
    painter.setRenderHint(QPainter::Antialiasing);
    if (style.margin > 0) drawShadow(painter, frame, style.margin);

    // The shadow must not shine through the panel.
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillPath(outline, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    QLinearGradient background(frame.topLeft(), frame.bottomLeft());
    background.setColorAt(0, palette::withAlpha(palette::inkTop, style.opacity));
    background.setColorAt(1, palette::withAlpha(palette::inkBottom, style.opacity));
    painter.fillPath(outline, background);

    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.setClipPath(outline);
    drawGrain(painter, frame);
    painter.setClipping(false);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.strokePath(outline, QPen(palette::withAlpha(Qt::black, 0.55), 2.4));
    painter.strokePath(outline, QPen(palette::withAlpha(palette::gold, 0.20), 1));
    return panel;
}

}  // namespace vantor
