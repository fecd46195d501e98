#include "ui/GW2Button.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <utility>

#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;  // outside the frame, for the focus ring
constexpr int imageGap = 6;

}  // namespace

GW2Button::GW2Button(const QString& text, QWidget* parent)
    : GW2Button(text, QString(), GW2ButtonStyle::Kind::standard, parent) {}

GW2Button::GW2Button(const QString& text, QString image, GW2ButtonStyle::Kind kind, QWidget* parent)
    : Pressable(parent), style_(kind), image_(std::move(image)) {
    setText(text);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void GW2Button::setFootnote(bool footnote) {
    footnote_ = footnote;
    updateGeometry();
    update();
}

QFont GW2Button::textFont() const { return sansFont(footnote_ ? 12 : 14); }

QSize GW2Button::sizeHint() const {
    const QFontMetrics metrics(textFont());
    const int side = footnote_ ? 10 : 16;
    const int picture = image_.isEmpty() ? 0 : metrics.height() + (text().isEmpty() ? 0 : imageGap);
    return {metrics.horizontalAdvance(text()) + picture + 2 * (side + ringRoom),
            metrics.height() + (footnote_ ? 8 : 15) + 2 * ringRoom};
}

void GW2Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ControlState state = Pressable::state();
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRect frame = rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom).translated(0, state.pressed ? 1 : 0);
    style_.paintBackground(painter, frame, state);

    painter.setFont(textFont());
    const QFontMetrics metrics(painter.font());
    const int side = image_.isEmpty() ? 0 : metrics.height();
    const int gap = image_.isEmpty() || text().isEmpty() ? 0 : imageGap;
    const int room = frame.width() - side - gap - 8;
    const QString shown = metrics.elidedText(text(), Qt::ElideRight, room);
    int left = frame.left() + (frame.width() - side - gap - metrics.horizontalAdvance(shown)) / 2;
    if (side > 0) {
        painter.drawPixmap(left, frame.center().y() - side / 2 + 1, image(image_, {side, side}, devicePixelRatioF()));
        left += side + gap;
    }
    painter.setPen(style_.textColour(state));
    painter.drawText(QRect(left, frame.top(), frame.right() - left, frame.height()), Qt::AlignVCenter | Qt::AlignLeft,
                     shown);
}

}  // namespace vantor
