#include "ui/ImageButton.h"

#include <utility>

#include "ui/Images.h"
#include "ui/States.h"

namespace vantor {

ImageButton::ImageButton(QString imageName, QString hoverImage, const QString& name, QWidget* parent)
    : QAbstractButton(parent), image_(std::move(imageName)), hoverImage_(std::move(hoverImage)) {
    setAccessibleName(name);
    setToolTip(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(ImageButton::sizeHint());
}

// The 30 x 30 control and the room for its focus ring.
QSize ImageButton::sizeHint() const { return {36, 36}; }

void ImageButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF ground = QRectF(rect()).adjusted(3, 3, -3, -3).translated(0, isDown() ? 1 : 0);
    painter.setOpacity(isEnabled() ? 1.0 : 0.45);
    painter.fillRect(ground, isDown() ? QColor(0x0A, 0x07, 0x06) : QColor(0x14, 0x0E, 0x0B));
    if (underMouse() && isEnabled()) paintHover(painter, ground);
    const QPixmap picture = image(underMouse() ? hoverImage_ : image_, {20, 20}, devicePixelRatioF());
    painter.drawPixmap(ground.center() - QPointF(10, 10), picture);
    if (hasFocus()) paintFocusRing(painter, ground);
}

}  // namespace vantor
