#include "ui/ImageButton.h"

#include <QtGui/QKeyEvent>
#include <utility>

#include "ui/ControlState.h"
#include "ui/GW2ButtonStyle.h"
#include "ui/Images.h"
#include "ui/States.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;
constexpr int side = 5;  // between the image and the control's edge

}  // namespace

ImageButton::ImageButton(QString imageName, QString hoverImage, const QString& name, QWidget* parent)
    : QAbstractButton(parent), image_(std::move(imageName)), hoverImage_(std::move(hoverImage)) {
    setAccessibleName(name);
    setToolTip(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(ImageButton::sizeHint());
}

void ImageButton::setImages(QString imageName, QString hoverImage) {
    image_ = std::move(imageName);
    hoverImage_ = std::move(hoverImage);
    update();
}

void ImageButton::setImageSize(int pixels) {
    imageSize_ = pixels;
    setFixedSize(sizeHint());
}

void ImageButton::setQuiet(bool quiet) {
    quiet_ = quiet;
    update();
}

QSize ImageButton::sizeHint() const {
    const int whole = imageSize_ + 2 * (side + ringRoom);
    return {whole, whole};
}

void ImageButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ControlState state = ControlState::of(*this);
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRectF ground =
        QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom).translated(0, state.pressed ? 1 : 0);
    if (!quiet_ || state.pressed)
        painter.fillRect(ground, state.pressed ? QColor(0x0A, 0x07, 0x06) : QColor(0x14, 0x0E, 0x0B));
    if (state.hovered) paintHover(painter, ground);
    const QPixmap picture = image(state.hovered ? hoverImage_ : image_, {imageSize_, imageSize_}, devicePixelRatioF());
    painter.drawPixmap(ground.center() - QPointF(imageSize_, imageSize_) / 2, picture);
    if (state.focused) paintFocusRing(painter, ground);
}

void ImageButton::focusInEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QAbstractButton::focusInEvent(event);
}

void ImageButton::focusOutEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QAbstractButton::focusOutEvent(event);
}

void ImageButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return click();
    QAbstractButton::keyPressEvent(event);
}

}  // namespace vantor
