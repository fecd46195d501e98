#include "ui/GW2Toggle.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QRadialGradient>
#include <algorithm>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int ringRoom = 4;
constexpr int gap = 10;
constexpr int fontSize = 14;
constexpr int wrapping = static_cast<int>(Qt::TextWordWrap);

int textLeft() { return ringRoom + GW2ToggleStyle::size().width() + gap; }

}  // namespace

QSize GW2ToggleStyle::size() { return {withText(38), withText(20)}; }

void GW2ToggleStyle::paint(QPainter& painter, const QRectF& frame, const ControlState& state, double position) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = frame.adjusted(0.5, 1.5, -0.5, -1.5);
    const double round = track.height() / 2;
    painter.setPen(QPen(palette::between(QColor(0x6E, 0x66, 0x58), palette::gold.darker(135), position), 1));
    painter.setBrush(palette::between(QColor(0x12, 0x0E, 0x0B), palette::strokeLight, position));
    painter.drawRoundedRect(track, round, round);
    if (state.glow > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, 0.1 * state.glow));
        painter.drawRoundedRect(track, round, round);
    }
    const double knob = track.height() - 5;
    const double travel = track.width() - knob - 5;
    const QRectF place(track.left() + 2.5 + travel * position, track.top() + 2.5 + (state.pressed ? 0.5 : 0), knob,
                       knob);
    const QColor face = palette::between(palette::dim, palette::gold, position);
    QRadialGradient light(place.center() - QPointF(0, knob / 4), knob);
    light.setColorAt(0, face.lighter(112));
    light.setColorAt(1, face.darker(140));
    painter.setPen(QPen(QColor(0x12, 0x0E, 0x0B), 1));
    painter.setBrush(light);
    painter.drawEllipse(place);
    painter.restore();
    if (state.focused) paintFocusRing(painter, frame);
}

GW2Toggle::GW2Toggle(const QString& text, QWidget* parent)
    : Pressable(parent, QAccessible::CheckBox), position_(this, springs::quick, [this](double) { update(); }) {
    setText(text);
    setCheckable(true);
    // It grows by the lines of its text; a fixed height would cut them.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    QObject::connect(this, &QAbstractButton::toggled, this, [this](bool on) { position_.moveTo(on ? 1 : 0); });
}

void GW2Toggle::bind(Defaults& defaults, std::string_view key, bool byDefault) {
    binding_ = std::make_unique<SettingBinding<bool>>(defaults, key, byDefault);
    setChecked(binding_->value());
    position_.jumpTo(isChecked() ? 1 : 0);
    binding_->observe([this](bool on) { setChecked(on); });
    QObject::connect(this, &QAbstractButton::clicked, this, [this](bool on) {
        binding_->set(on);
        // What was not stored is not in force.
        setChecked(binding_->value());
    });
}

QSize GW2Toggle::sizeHint() const {
    const QFontMetrics metrics(sansFont(fontSize));
    return {textLeft() + metrics.horizontalAdvance(text()) + ringRoom + 2,
            std::max(metrics.height(), GW2ToggleStyle::size().height()) + 2 * ringRoom};
}

QSize GW2Toggle::minimumSizeHint() const { return {textLeft() + withText(120), sizeHint().height()}; }

int GW2Toggle::heightForWidth(int width) const {
    const QRect room(0, 0, std::max(1, width - textLeft() - ringRoom), 10'000);
    const int height = QFontMetrics(sansFont(fontSize)).boundingRect(room, wrapping, text()).height();
    return std::max(height + 2 * ringRoom, sizeHint().height());
}

void GW2Toggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ControlState state = Pressable::state();
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    painter.setFont(sansFont(fontSize));
    const QFontMetrics metrics(painter.font());
    const QRect room = rect().adjusted(textLeft(), 0, -ringRoom, 0);
    const int high = metrics.boundingRect(room, wrapping, text()).height();
    const QRect lines(room.left(), (height() - high) / 2, room.width(), high);
    // Beside the first line of the text.
    const QSize track = GW2ToggleStyle::size();
    const int top = lines.top() + (metrics.height() - track.height()) / 2;
    style_.paint(painter, QRectF(ringRoom, top, track.width(), track.height()), state, position_.value());
    painter.setPen(palette::between(palette::warmWhite, palette::gold, state.glow));
    painter.drawText(lines, static_cast<int>(Qt::AlignLeft | Qt::AlignTop) | wrapping, text());
}

}  // namespace vantor
