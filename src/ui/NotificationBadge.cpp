#include "ui/NotificationBadge.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

QFont badgeFont() { return sansFont(11, true); }

}  // namespace

NotificationBadge::NotificationBadge(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void NotificationBadge::setText(const QString& text) {
    if (std::exchange(text_, text) == text) return;
    setAccessibleName(text);
    setVisible(!text.isEmpty());
    updateGeometry();
    update();
}

QSize NotificationBadge::sizeOf(const QString& text) {
    const QFontMetrics metrics(badgeFont());
    const int height = metrics.height() + 2;
    return {std::max(height, metrics.horizontalAdvance(text) + 10), height};
}

void NotificationBadge::paint(QPainter& painter, QPointF centre, const QString& text) {
    const QSizeF size = sizeOf(text);
    const QRectF frame(centre.x() - size.width() / 2, centre.y() - size.height() / 2, size.width(), size.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::withAlpha(palette::gold, 0.5), 1));
    painter.setBrush(palette::strokeLight);
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), size.height() / 2, size.height() / 2);
    painter.setFont(badgeFont());
    painter.setPen(palette::onRed);
    painter.drawText(frame, Qt::AlignCenter, text);
    painter.restore();
}

void NotificationBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, QRectF(rect()).center(), text_);
}

}  // namespace vantor
