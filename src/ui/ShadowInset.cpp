#include "ui/ShadowInset.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>

#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr double shadowDepth = 10;

}  // namespace

ShadowInset::ShadowInset(QWidget* parent) : QWidget(parent) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 10);
    layout->setSpacing(8);
}

void ShadowInset::setContent(QWidget* content) { layout()->addWidget(content); }

void ShadowInset::paint(QPainter& painter, const QRectF& frame) {
    painter.save();
    painter.fillRect(frame, palette::withAlpha(Qt::black, 0.2));
    const auto shade = [&](QPointF from, QPointF to, const QRectF& area, double strength) {
        QLinearGradient gradient(from, to);
        gradient.setColorAt(0, palette::withAlpha(Qt::black, strength));
        gradient.setColorAt(1, palette::withAlpha(Qt::black, 0));
        painter.fillRect(area, gradient);
    };
    shade(frame.topLeft(), frame.topLeft() + QPointF(0, shadowDepth),
          {frame.left(), frame.top(), frame.width(), shadowDepth}, 0.5);
    shade(frame.bottomLeft(), frame.bottomLeft() - QPointF(0, shadowDepth),
          {frame.left(), frame.bottom() - shadowDepth, frame.width(), shadowDepth}, 0.25);
    shade(frame.topLeft(), frame.topLeft() + QPointF(shadowDepth, 0),
          {frame.left(), frame.top(), shadowDepth, frame.height()}, 0.35);
    shade(frame.topRight(), frame.topRight() - QPointF(shadowDepth, 0),
          {frame.right() - shadowDepth, frame.top(), shadowDepth, frame.height()}, 0.35);
    painter.setPen(QPen(palette::withAlpha(palette::line, 0.16), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

void ShadowInset::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, rect());
}

}  // namespace vantor
