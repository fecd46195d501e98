#include "timers/view/RowButton.h"

#include <QtGui/QPainter>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Images.h"

namespace vantor {

RowButton::RowButton(QString image, QWidget* parent) : QAbstractButton(parent), image_(std::move(image)) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(RowButton::sizeHint());
}

void RowButton::setImage(const QString& image) {
    if (image == std::exchange(image_, image)) return;
    update();
}

void RowButton::setSpokenName(const QString& name) {
    if (accessibleName() != name) setAccessibleName(name);
}

void RowButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF background = QRectF(rect()).adjusted(3, 3, -3, -3).translated(0, isDown() ? 1 : 0);
    painter.setOpacity(isEnabled() ? 1.0 : 0.45);
    paintBackground(painter, background);
    if (underMouse() && isEnabled()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, 0.07));
        painter.drawRoundedRect(background, 3, 3);
    }
    painter.drawPixmap(background.center() - QPointF(10, 10), vantor::image(image_, {20, 20}, devicePixelRatioF()));
    if (hasFocus()) paintFocusRing(painter, background);
}

void RowButton::paintBackground(QPainter& painter, const QRectF& background) const {
    if (plain_) return;
    painter.setPen(QPen(palette::withAlpha(palette::gold, underMouse() ? 0.34 : 0.18), 1));
    painter.setBrush(isDown() ? QColor(0x12, 0x0D, 0x0A) : QColor(0x2A, 0x22, 0x1B));
    painter.drawRoundedRect(background.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

}  // namespace vantor
