#include "ui/ImageButton.h"

#include <QtGui/QKeyEvent>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Images.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;
constexpr int side = 5;  // between the image and the control's edge

}  // namespace

ImageButton::ImageButton(QString imageName, QString hoverImage, const QString& name, QWidget* parent)
    : Pressable(parent), image_(std::move(imageName)), hoverImage_(std::move(hoverImage)) {
    setAccessibleName(name);
    setToolTip(name);
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

void ImageButton::setGround(QString image) {
    background_ = std::move(image);
    update();
}

int ImageButton::pictureSize() const { return withText(imageSize_); }

QSize ImageButton::sizeHint() const {
    const int whole = pictureSize() + 2 * (side + ringRoom);
    return {whole, whole};
}

void ImageButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ControlState state = Pressable::state();
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRectF background =
        QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom).translated(0, state.pressed ? 1 : 0);
    if (!background_.isEmpty()) {
        const QSize whole = background.size().toSize();
        for (const QString& layer : {background_, state.hovered ? hoverImage_ : image_})
            painter.drawPixmap(background.topLeft(), image(layer, whole, devicePixelRatioF()));
        if (state.focused) paintFocusRing(painter, background);
        return;
    }
    ControlState bare = state;
    bare.focused = false;
    GW2ButtonStyle(quiet_ ? GW2ButtonStyle::Kind::quiet : GW2ButtonStyle::Kind::standard)
        .paintBackground(painter, background, bare);
    const QPixmap picture =
        image(state.hovered ? hoverImage_ : image_, {pictureSize(), pictureSize()}, devicePixelRatioF());
    painter.drawPixmap(background.center() - QPointF(pictureSize(), pictureSize()) / 2, picture);
    if (state.focused) paintFocusRing(painter, background);
}

}  // namespace vantor
