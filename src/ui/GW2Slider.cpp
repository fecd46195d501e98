#include "ui/GW2Slider.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QLinearGradient>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QRadialGradient>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int knobSize = 16;
constexpr int labelGap = 12;
constexpr int labelFont = 13;
constexpr int valueFont = 17;

double knob() { return withText(knobSize); }

class AccessibleSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(GW2Slider& slider) : QAccessibleWidget(&slider, QAccessible::Slider), slider_(slider) {}

    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? slider_.shownText() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QVariant currentValue() const override { return slider_.shownValue(); }
    void setCurrentValue(const QVariant& value) override { slider_.setShownValue(value.toDouble()); }
    [[nodiscard]] QVariant minimumValue() const override { return slider_.from(); }
    [[nodiscard]] QVariant maximumValue() const override { return slider_.from() + slider_.maximum() * slider_.step(); }
    [[nodiscard]] QVariant minimumStepSize() const override { return slider_.step(); }

private:
    GW2Slider& slider_;
};

}  // namespace

GW2Slider::GW2Slider(const QString& name, double from, double to, double step, QString startLabel, QString endLabel,
                     QWidget* parent)
    : QAbstractSlider(parent),
      from_(from),
      step_(step),
      startLabel_(std::move(startLabel)),
      endLabel_(std::move(endLabel)),
      text_([](double value) { return QString::number(value); }) {
    describeControls();
    setAccessibleName(name);
    setOrientation(Qt::Horizontal);
    setRange(0, static_cast<int>(std::lround((to - from) / step)));
    setSingleStep(1);
    setPageStep(1);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void GW2Slider::bind(Defaults& defaults, std::string_view key, double byDefault) {
    binding_ = std::make_unique<SettingBinding<double>>(defaults, key, byDefault);
    showStored(binding_->value());
    binding_->observe([this](double value) { showStored(value); });
}

int GW2Slider::stepOf(double shown) const {
    const double steps = (shown - from_) / step_;
    return static_cast<int>(
        std::lround(std::clamp(steps, static_cast<double>(minimum()), static_cast<double>(maximum()))));
}

double GW2Slider::shownValue() const { return from_ + value() * step_; }

void GW2Slider::setShownValue(double value) { setValue(stepOf(value)); }

void GW2Slider::showStored(double stored) {
    const bool before = std::exchange(showing_, true);
    setValue(stepOf(stored));
    showing_ = before;
    update();
}

void GW2Slider::setValueText(std::function<QString(double)> text) {
    text_ = std::move(text);
    update();
}

QSize GW2Slider::sizeHint() const {
    return {withText(300), QFontMetrics(serifFont(valueFont)).height() + withText(knobSize) + 10};
}

QSize GW2Slider::minimumSizeHint() const { return {withText(180), sizeHint().height()}; }

QRectF GW2Slider::groove() const {
    const QFontMetrics metrics(sansFont(labelFont));
    const double left = metrics.horizontalAdvance(startLabel_) + labelGap + knob() / 2 + 3;
    const double right = metrics.horizontalAdvance(endLabel_) + labelGap + knob() / 2 + 3;
    const double middle = height() - knob() / 2 - 5;
    return {left, middle - 2, width() - left - right, 4};
}

void GW2Slider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ControlState state = ControlState::of(*this);
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRectF line = groove();
    const double at = line.left() + line.width() * (maximum() > 0 ? double(value()) / maximum() : 0);

    painter.setFont(sansFont(labelFont));
    painter.setPen(palette::sand);
    const QRectF labels(3, line.center().y() - withText(12), width() - 6, withText(24));
    painter.drawText(labels, Qt::AlignLeft | Qt::AlignVCenter, startLabel_);
    painter.drawText(labels, Qt::AlignRight | Qt::AlignVCenter, endLabel_);

    painter.setPen(QPen(palette::withAlpha(palette::gold, 0.25), 1));
    painter.setBrush(palette::fieldInk);
    painter.drawRoundedRect(line, 2, 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::strokeLight);
    painter.drawRoundedRect(QRectF(line.topLeft(), QPointF(at, line.bottom())), 2, 2);
    for (int step = 0; step <= maximum(); ++step) {
        const double x = line.left() + line.width() * step / std::max(1, maximum());
        painter.setBrush(step <= value() ? palette::withAlpha(palette::gold, 0.8)
                                         : palette::withAlpha(palette::sand, 0.5));
        painter.drawEllipse(QPointF(x, line.center().y()), 1.4, 1.4);
    }

    const QRectF place(at - knob() / 2, line.center().y() - knob() / 2, knob(), knob());
    QRadialGradient light(place.center() - QPointF(0, 4), knob());
    const QColor face =
        state.hovered || state.pressed || isSliderDown() ? palette::gold.lighter(106) : palette::gold.darker(108);
    light.setColorAt(0, face);
    light.setColorAt(1, face.darker(160));
    painter.setPen(QPen(QColor(0x12, 0x0E, 0x0B), 1));
    painter.setBrush(light);
    painter.drawEllipse(place);
    if (state.focused) paintFocusRing(painter, place);

    painter.setFont(serifFont(valueFont));
    painter.setPen(palette::gold);
    const QString text = text_(shownValue());
    const double wide = QFontMetrics(painter.font()).horizontalAdvance(text);
    const double left = std::clamp(at - wide / 2, 2.0, std::max(2.0, width() - wide - 2));
    painter.drawText(QPointF(left, QFontMetrics(painter.font()).ascent()), text);
}

void GW2Slider::moveTo(double x) {
    const QRectF line = groove();
    const double steps = (x - line.left()) / std::max(1.0, line.width()) * maximum();
    setValue(static_cast<int>(std::lround(std::clamp(steps, 0.0, static_cast<double>(maximum())))));
}

void GW2Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    setSliderDown(true);
    moveTo(event->position().x());
}

void GW2Slider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) moveTo(event->position().x());
}

void GW2Slider::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
    update();
}

void GW2Slider::focusInEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QAbstractSlider::focusInEvent(event);
}

void GW2Slider::focusOutEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QAbstractSlider::focusOutEvent(event);
}

void GW2Slider::sliderChange(SliderChange change) {
    QAbstractSlider::sliderChange(change);
    if (change == SliderValueChange && !showing_) tell();
}

void GW2Slider::tell() {
    if (binding_) binding_->set(shownValue());
    if (changed_) changed_(shownValue());
}

QAccessibleInterface* GW2Slider::makeAccessible() { return new AccessibleSlider(*this); }

}  // namespace vantor
