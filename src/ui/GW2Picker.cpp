#include "ui/GW2Picker.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2ButtonStyle.h"
#include "ui/Images.h"
#include "ui/Palette.h"
#include "ui/States.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;
constexpr int fontSize = 14;
constexpr int side = 12;
constexpr int arrow = 16;
constexpr int imageSize = 18;

int lineHeight() { return QFontMetrics(sansFont(fontSize)).height() + 12; }

void paintOption(QPainter& painter, const QRect& frame, const GW2PickerOption& option, double ratio) {
    int left = frame.left() + side;
    if (!option.image.isEmpty()) {
        painter.drawPixmap(left, frame.center().y() - imageSize / 2,
                           image(option.image, {imageSize, imageSize}, ratio));
        left += imageSize + 8;
    }
    const QRect room(left, frame.top(), frame.right() - side - left, frame.height());
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                     QFontMetrics(painter.font()).elidedText(option.text, Qt::ElideRight, room.width()));
}

}  // namespace

// The open list: over everything else in the window, gone at a press outside.
class GW2Picker::List final : public QWidget {
public:
    explicit List(GW2Picker& picker) : QWidget(picker.window()), picker_(picker), current_(picker.chosen_.value_or(0)) {
        setMouseTracking(true);
        setFocusPolicy(Qt::StrongFocus);
        setAccessibleName(picker.accessibleName());
        setAttribute(Qt::WA_DeleteOnClose);
        place();
        show();
        raise();
        setFocus(Qt::PopupFocusReason);
        window()->installEventFilter(this);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette::withAlpha(palette::gold, 0.45), 1));
        painter.setBrush(QColor(0x19, 0x14, 0x10));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        painter.setFont(sansFont(fontSize));
        for (std::size_t i = 0; i < picker_.options_.size(); ++i) {
            const QRect frame = lineAt(i);
            if (i == current_) painter.fillRect(frame, palette::withAlpha(palette::red, 0.4));
            painter.setPen(i == picker_.chosen_ ? palette::gold : palette::warmWhite);
            paintOption(painter, frame, picker_.options_[i], devicePixelRatioF());
        }
    }
    void mouseMoveEvent(QMouseEvent* event) override { setCurrent(event->position().toPoint()); }
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (!rect().contains(event->position().toPoint())) return;
        setCurrent(event->position().toPoint());
        picker_.take(current_);
    }
    // A key that is the list's own goes no further, not even as a shortcut of the window.
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        return QWidget::event(event);
    }
    void keyPressEvent(QKeyEvent* event) override {
        const std::size_t last = picker_.options_.size() - 1;
        switch (event->key()) {
            case Qt::Key_Up:
                return setCurrent(current_ == 0 ? 0 : current_ - 1);
            case Qt::Key_Down:
                return setCurrent(std::min(current_ + 1, last));
            case Qt::Key_Home:
                return setCurrent(std::size_t{0});
            case Qt::Key_End:
                return setCurrent(last);
            case Qt::Key_Return:
            case Qt::Key_Enter:
            case Qt::Key_Space:
                return picker_.take(current_);
            case Qt::Key_Escape:
                picker_.close();
                return picker_.setFocus(Qt::TabFocusReason);
            default:
                event->accept();
        }
    }
    void focusOutEvent(QFocusEvent*) override { picker_.close(); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Hide) picker_.close();
        return false;
    }

private:
    // Below the picker, or above it where there is more room.
    void place() {
        const QRect room = window()->rect().adjusted(8, 8, -8, -8);
        const QPoint at = picker_.mapTo(window(), QPoint(ringRoom, picker_.height()));
        const int height = static_cast<int>(picker_.options_.size()) * lineHeight() + 8;
        const int above = at.y() - picker_.height() - height;
        const int top = at.y() + height <= room.bottom() || above < room.top() ? at.y() : above;
        setGeometry(at.x(), std::max(room.top(), std::min(top, room.bottom() - height)), picker_.width() - 2 * ringRoom,
                    height);
    }
    [[nodiscard]] QRect lineAt(std::size_t index) const {
        return {1, 4 + static_cast<int>(index) * lineHeight(), width() - 2, lineHeight()};
    }
    void setCurrent(QPoint place) {
        for (std::size_t i = 0; i < picker_.options_.size(); ++i)
            if (lineAt(i).contains(place)) return setCurrent(i);
    }
    void setCurrent(std::size_t index) {
        if (std::exchange(current_, index) != index) update();
    }

    GW2Picker& picker_;
    std::size_t current_;
};

GW2Picker::GW2Picker(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

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
    chosen_ = found == options_.end() ? std::nullopt
                                      : std::optional(static_cast<std::size_t>(std::distance(options_.begin(), found)));
    update();
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
    if (!list_ && !options_.empty()) list_ = new List(*this);
}

void GW2Picker::close() {
    if (QWidget* const list = std::exchange(list_, nullptr).data()) {
        list->hide();
        list->deleteLater();
    }
    update();
}

void GW2Picker::take(std::size_t index) {
    chosen_ = index;
    close();
    setFocus(Qt::OtherFocusReason);
    if (binding_) binding_->set(options_.at(index).id);
    if (handler_) handler_(options_.at(index));
}

QString GW2Picker::shownText() const { return chosen_ ? options_.at(*chosen_).text : placeholder_; }

QSize GW2Picker::sizeHint() const {
    const QFontMetrics metrics(sansFont(fontSize));
    int widest = metrics.horizontalAdvance(placeholder_);
    for (const auto& option : options_)
        widest =
            std::max(widest, metrics.horizontalAdvance(option.text) + (option.image.isEmpty() ? 0 : imageSize + 8));
    return {widest + 3 * side + arrow + 2 * ringRoom, lineHeight() + 2 + 2 * ringRoom};
}

QSize GW2Picker::minimumSizeHint() const { return {std::min(sizeHint().width(), 160), sizeHint().height()}; }

void GW2Picker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    ControlState state = ControlState::of(*this);
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRect frame = rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const GW2ButtonStyle style;
    style.paintGround(painter, frame, state);
    painter.setFont(sansFont(fontSize));
    painter.setPen(chosen_ ? style.textColour(state) : palette::sand);
    paintOption(painter, frame.adjusted(0, 0, -arrow - 4, 0),
                chosen_ ? options_.at(*chosen_) : GW2PickerOption{{}, placeholder_}, devicePixelRatioF());
    painter.drawPixmap(frame.right() - arrow - 8, frame.center().y() - arrow / 2 + 1,
                       image(QStringLiteral("chevron.down"), {arrow, arrow}, devicePixelRatioF()));
}

bool GW2Picker::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) update();
    return QWidget::event(event);
}

void GW2Picker::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    if (isOpen())
        close();
    else
        open();
}

void GW2Picker::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return open();
        case Qt::Key_Up:
            if (chosen_.value_or(0) > 0) take(*chosen_ - 1);
            return;
        case Qt::Key_Down:
            if (!options_.empty()) take(chosen_ ? std::min(*chosen_ + 1, options_.size() - 1) : 0);
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

}  // namespace vantor
