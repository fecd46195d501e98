#include "ui/GW2Picker.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Images.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;
constexpr int fontSize = 14;
constexpr int side = 12;
constexpr int arrow = 14;
constexpr int imageSize = 18;
constexpr int imageGap = 8;

class AccessiblePicker final : public QAccessibleWidget {
public:
    explicit AccessiblePicker(GW2Picker& picker) : QAccessibleWidget(&picker, QAccessible::ComboBox), picker_(picker) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = picker_.isOpen();
        state.collapsed = !picker_.isOpen();
        state.hasPopup = true;
        return state;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? picker_.shownText() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QStringList actionNames() const override {
        return QStringList(QAccessibleActionInterface::showMenuAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == QAccessibleActionInterface::showMenuAction()) return picker_.open();
        QAccessibleWidget::doAction(name);
    }

private:
    GW2Picker& picker_;
};

}  // namespace

GW2Picker::GW2Picker(const QString& name, QWidget* parent) : QWidget(parent) {
    describeControls();
    setAccessibleName(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

GW2Picker::~GW2Picker() { close(); }

void GW2Picker::setOptions(std::vector<GW2PickerOption> options) {
    const auto before = chosen();
    options_ = std::move(options);
    chosen_.reset();
    if (before) choose(*before);
    updateGeometry();
    update();
}

void GW2Picker::choose(const std::string& id) {
    const auto found =
        std::find_if(options_.begin(), options_.end(), [&](const auto& option) { return option.id == id; });
    showChoice(found == options_.end()
                   ? std::nullopt
                   : std::optional(static_cast<std::size_t>(std::distance(options_.begin(), found))));
}

void GW2Picker::showChoice(std::optional<std::size_t> index) {
    if (std::exchange(chosen_, index) == index) return;
    update();
    QAccessibleValueChangeEvent changed(this, shownText());
    QAccessible::updateAccessibility(&changed);
}

std::optional<std::string> GW2Picker::chosen() const {
    return chosen_ ? std::optional(options_.at(*chosen_).id) : std::nullopt;
}

void GW2Picker::setPlaceholder(const QString& text) {
    placeholder_ = text;
    update();
}

void GW2Picker::bind(Defaults& defaults, std::string_view key, std::string byDefault) {
    binding_ = std::make_unique<SettingBinding<std::string>>(defaults, key, std::move(byDefault));
    choose(binding_->value());
    binding_->observe([this](const std::string& id) { choose(id); });
}

void GW2Picker::open() {
    if (list_ || options_.empty() || !isVisible()) return;
    std::vector<ListPopup::Line> lines;
    for (const GW2PickerOption& option : options_) lines.push_back({option.text, option.image});
    list_ = new ListPopup(*this, rect().adjusted(ringRoom, ringRoom, -ringRoom, 1 - ringRoom),
                          {.name = accessibleName(),
                           .lines = std::move(lines),
                           .chosen = chosen_,
                           .take = [this](std::size_t index) { take(index); },
                           .closed =
                               [this](bool byKeyboard) {
                                   list_ = nullptr;
                                   if (byKeyboard) setFocus(ringBefore_ ? Qt::TabFocusReason : Qt::OtherFocusReason);
                                   update();
                               }});
    update();
}

void GW2Picker::close() {
    if (list_) list_->close(false);
}

void GW2Picker::take(std::size_t index) {
    showChoice(index);
    if (binding_) binding_->set(options_.at(index).id);
    if (handler_) handler_(options_.at(index));
}

QString GW2Picker::shownText() const { return chosen_ ? options_.at(*chosen_).text : placeholder_; }

QSize GW2Picker::sizeHint() const {
    const QFontMetrics metrics(sansFont(fontSize));
    int widest = metrics.horizontalAdvance(placeholder_);
    for (const auto& option : options_)
        widest = std::max(widest, metrics.horizontalAdvance(option.text) +
                                      (option.image.isEmpty() ? 0 : withText(imageSize) + imageGap));
    return {widest + 3 * side + withText(arrow) + 2 * ringRoom, metrics.height() + 14 + 2 * ringRoom};
}

QSize GW2Picker::minimumSizeHint() const { return {std::min(sizeHint().width(), withText(160)), sizeHint().height()}; }

void GW2Picker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    ControlState state = ControlState::of(*this);
    state.pressed = state.pressed || isOpen();
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRect frame = rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const GW2ButtonStyle style;
    style.paintBackground(painter, frame, state);
    const QString picture = chosen_ ? options_.at(*chosen_).image : QString();
    int left = frame.left() + side;
    if (!picture.isEmpty()) {
        const int pixels = withText(imageSize);
        painter.drawPixmap(left, frame.top() + (frame.height() - pixels) / 2,
                           image(picture, {pixels, pixels}, devicePixelRatioF()));
        left += pixels + imageGap;
    }
    const int point = withText(arrow);
    const QRect room(left, frame.top(), frame.right() - side - point - 6 - left, frame.height());
    painter.setFont(sansFont(fontSize));
    painter.setPen(chosen_ ? style.textColour(state) : palette::sand);
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                     QFontMetrics(painter.font()).elidedText(shownText(), Qt::ElideRight, room.width()));
    painter.drawPixmap(frame.right() + 1 - side - point, frame.top() + (frame.height() - point) / 2,
                       image(QStringLiteral("chevron.down"), {point, point}, devicePixelRatioF()));
}

bool GW2Picker::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) update();
    return QWidget::event(event);
}

void GW2Picker::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    ringBefore_ = false;
    if (isOpen())
        close();
    else
        open();
}

void GW2Picker::keyPressEvent(QKeyEvent* event) {
    ringBefore_ = true;
    switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return open();
        case Qt::Key_Up:
            if (chosen_ && *chosen_ > 0) take(*chosen_ - 1);
            return;
        case Qt::Key_Down:
            if (!chosen_ && !options_.empty())
                take(0);
            else if (chosen_ && *chosen_ + 1 < options_.size())
                take(*chosen_ + 1);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void GW2Picker::focusInEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QWidget::focusInEvent(event);
}

void GW2Picker::focusOutEvent(QFocusEvent* event) {
    noteFocus(*this, *event);
    QWidget::focusOutEvent(event);
}

void GW2Picker::hideEvent(QHideEvent*) { close(); }

QAccessibleInterface* GW2Picker::makeAccessible() { return new AccessiblePicker(*this); }

}  // namespace vantor
