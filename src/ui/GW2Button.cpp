#include "ui/GW2Button.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QLinearGradient>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/Palette.h"
#include "ui/TornOutline.h"

namespace vantor {

namespace {

struct Background {
    QColor top;
    QColor bottom;
    QColor edge;
};

Background backgroundOf(GW2ButtonStyle::Kind kind, const ControlState& state) {
    using Kind = GW2ButtonStyle::Kind;
    if (kind == Kind::primary) {
        if (state.pressed) return {palette::strokeDark.darker(125), palette::strokeDark, palette::line};
        return {palette::strokeLight, palette::strokeDark, palette::withAlpha(palette::gold, 0.45)};
    }
    if (kind == Kind::quiet) {
        const QColor clear(0, 0, 0, 0);
        if (state.pressed) return {palette::withAlpha(Qt::black, 0.35), palette::withAlpha(Qt::black, 0.35), clear};
        return {clear, clear, clear};
    }
    if (state.pressed) return {QColor(0x10, 0x0C, 0x0A), QColor(0x17, 0x12, 0x0E), palette::line};
    return {QColor(0x33, 0x2A, 0x21), QColor(0x22, 0x1B, 0x15), palette::withAlpha(palette::gold, 0.34)};
}

constexpr int ringRoom = 3;  // outside the frame, for the focus ring
constexpr int imageGap = 6;

}  // namespace

void GW2ButtonStyle::paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const {
    const Background background = backgroundOf(kind_, state);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inside = frame.adjusted(0.5, 0.5, -0.5, -0.5);
    const QPainterPath outline = tornOutline(inside, 1.2, 23);
    QLinearGradient fill(inside.topLeft(), inside.bottomLeft());
    fill.setColorAt(0, background.top);
    fill.setColorAt(1, background.bottom);
    painter.setPen(QPen(background.edge, 1));
    painter.setBrush(fill);
    painter.drawPath(outline);
    if (state.glow > 0 && !state.pressed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, (kind_ == Kind::primary ? 0.12 : 0.07) * state.glow));
        painter.drawPath(outline);
    }
    painter.restore();
    if (state.focused) paintFocusRing(painter, frame);
}

QColor GW2ButtonStyle::textColour(const ControlState& state) const {
    if (kind_ == Kind::primary) return palette::onRed;
    return palette::between(palette::warmWhite, palette::gold, state.pressed ? 1 : state.glow);
}

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
