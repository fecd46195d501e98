#include "ui/BrushStroke.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "ui/Palette.h"
#include "ui/TornOutline.h"

namespace vantor {

namespace {

// Where the bristles leave the ground: a ragged right end.
QPainterPath strokeShape(const QRectF& frame, double solid) {
    QPainterPath path;
    const double right = frame.left() + frame.width() * solid;
    path.moveTo(frame.left(), frame.top() + 2);
    constexpr double spacing = 7;
    const int places = static_cast<int>((right - frame.left()) / spacing) + 1;
    for (int place = 0; place < places; ++place)
        path.lineTo(frame.left() + spacing * place, frame.top() + 4 * roughness(51, place));
    const int bristles = 9;
    for (int bristle = 0; bristle <= bristles; ++bristle) {
        const double y = frame.top() + frame.height() * bristle / bristles;
        const double reach = bristle % 2 == 0 ? -18 * roughness(52, bristle) : 26 * roughness(53, bristle);
        path.lineTo(right + reach, y);
    }
    for (int place = 0; place < places; ++place)
        path.lineTo(right - spacing * place, frame.bottom() - 4 * roughness(54, places + place));
    path.lineTo(frame.left(), frame.bottom() - 2);
    path.closeSubpath();
    return path;
}

}  // namespace

void paintBrushStroke(QPainter& painter, const QRectF& frame, bool lit) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient paint(frame.topLeft(), frame.topRight());
    const QColor from = lit ? palette::strokeDark.lighter(115) : palette::strokeDark;
    const QColor to = lit ? palette::strokeLight.lighter(115) : palette::strokeLight;
    paint.setColorAt(0, from);
    paint.setColorAt(0.62, to);
    paint.setColorAt(0.86, palette::withAlpha(to, 0.65));
    paint.setColorAt(1, palette::withAlpha(to, 0));
    painter.fillPath(strokeShape(frame, 0.86), paint);

    // The dry end: single hairs that run on after the paint is spent.
    for (int hair = 0; hair < 26; ++hair) {
        const double y = frame.top() + 3 + (frame.height() - 6) * roughness(61, hair);
        const double start = frame.left() + frame.width() * (0.70 + 0.12 * roughness(62, hair));
        const double length = frame.width() * (0.06 + 0.14 * roughness(63, hair));
        QLinearGradient dry(start, y, start + length, y);
        dry.setColorAt(0, palette::withAlpha(to, 0.5));
        dry.setColorAt(1, palette::withAlpha(to, 0));
        painter.fillRect(QRectF(start, y, length, 1 + 1.4 * roughness(64, hair)), dry);
        // And the streaks that the bristles leave in the paint itself.
        const double streak = frame.left() + frame.width() * 0.6 * roughness(65, hair);
        QLinearGradient light(streak, y, streak + length * 1.6, y);
        light.setColorAt(0, QColor(255, 255, 255, 0));
        light.setColorAt(0.5, QColor(255, 255, 255, 12));
        light.setColorAt(1, QColor(255, 255, 255, 0));
        painter.fillRect(QRectF(streak, y, length * 1.6, 1.5), light);
    }
    painter.restore();
}

}  // namespace vantor
