#include "ui/ListPopup.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Images.h"
#include "ui/Palette.h"
#include "ui/TornOutline.h"

namespace vantor {

namespace {

constexpr int fontSize = 14;
constexpr int side = 12;
constexpr int edge = 5;  // above the first and below the last line
constexpr int imageSize = 18;

// One line, for a screen reader.
class AccessibleLine final : public QAccessibleInterface {
public:
    AccessibleLine(ListPopup& list, std::size_t index) : list_(&list), index_(index) {}

    [[nodiscard]] bool isValid() const override { return list_ && index_ < list_->lines().size(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(list_); }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? list_->lines()[index_].text : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override {
        const QRect line = list_->lineAt(index_);
        return {list_->mapToGlobal(line.topLeft()), line.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = true;
        state.disabled = !list_->lines()[index_].enabled;
        state.selected = list_->chosen() == index_;
        state.focusable = true;
        state.focused = list_->current() == index_;
        return state;
    }

private:
    QPointer<ListPopup> list_;
    std::size_t index_;
};

class AccessibleList final : public QAccessibleWidget {
public:
    explicit AccessibleList(ListPopup& list) : QAccessibleWidget(&list, QAccessible::List), list_(list) {
        for (std::size_t i = 0; i < list.lines().size(); ++i)
            lines_.push_back(QAccessible::registerAccessibleInterface(new AccessibleLine(list, i)));
    }
    ~AccessibleList() override {
        for (const QAccessible::Id line : lines_) QAccessible::deleteAccessibleInterface(line);
    }
    [[nodiscard]] int childCount() const override { return static_cast<int>(lines_.size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return index >= 0 && index < childCount()
                   ? QAccessible::accessibleInterface(lines_[static_cast<std::size_t>(index)])
                   : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* line) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i) == line) return i;
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override { return child(static_cast<int>(list_.current())); }

private:
    ListPopup& list_;
    std::vector<QAccessible::Id> lines_;
};

}  // namespace

ListPopup::ListPopup(QWidget& anchor, const QRect& part, Wants wants)
    : QWidget(anchor.window()), anchor_(&anchor), wants_(std::move(wants)), current_(wants_.chosen.value_or(0)) {
    describeControls();
    setAccessibleName(wants_.name);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    if (!wants_.lines.at(current_).enabled) step(1);
    place(anchor, part);
    show();
    raise();
    go(current_);
    setFocus(Qt::PopupFocusReason);
    QCoreApplication::instance()->installEventFilter(this);
    escape_.emplace(*window(), [this] { close(true); });
}

int ListPopup::lineHeight() { return QFontMetrics(sansFont(fontSize)).height() + 12; }

QSize ListPopup::sizeFor(const std::vector<Line>& lines) {
    const QFontMetrics metrics(sansFont(fontSize));
    int widest = 0;
    for (const Line& line : lines)
        widest = std::max(widest,
                          metrics.horizontalAdvance(line.text) + (line.image.isEmpty() ? 0 : withText(imageSize) + 8));
    // A few more: text is measured in fractions of a pixel.
    return {widest + 2 * side + 6, static_cast<int>(lines.size()) * lineHeight() + 2 * edge};
}

void ListPopup::place(const QWidget& anchor, const QRect& part) {
    const QRect room = window()->rect().adjusted(8, 8, -8, -8);
    const QRect from(anchor.mapTo(window(), part.topLeft()), part.size());
    const QSize wanted = sizeFor(wants_.lines);
    const int below = room.bottom() - from.bottom();
    const int above = from.top() - room.top();
    const bool up = wanted.height() > below && above > below;
    const int height = std::min(wanted.height(), std::max(up ? above : below, lineHeight() + 2 * edge));
    const int width = std::min(std::max(wanted.width(), from.width()), room.width());
    const int left = std::clamp(from.left(), room.left(), std::max(room.left(), room.right() - width));
    setGeometry(left, up ? from.top() - height : from.bottom() + 1, width, height);
}

QRect ListPopup::lineAt(std::size_t index) const {
    return {1, edge + static_cast<int>(index) * lineHeight() - scrolled_, width() - 2, lineHeight()};
}

std::optional<std::size_t> ListPopup::lineUnder(QPoint place) const {
    for (std::size_t i = 0; i < wants_.lines.size(); ++i)
        if (rect().contains(place) && lineAt(i).contains(place) && wants_.lines[i].enabled) return i;
    return std::nullopt;
}

void ListPopup::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath background = tornOutline(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 1.4, 29);
    painter.fillPath(background, QColor(0x19, 0x14, 0x10));
    painter.setFont(sansFont(fontSize));
    painter.setClipPath(background);
    const int picture = withText(imageSize);
    for (std::size_t i = 0; i < wants_.lines.size(); ++i) {
        const Line& line = wants_.lines[i];
        const QRect frame = lineAt(i);
        painter.setOpacity(line.enabled ? 1 : disabledOpacity);
        if (i == current_ && line.enabled) {
            painter.fillRect(frame, palette::withAlpha(palette::gold, 0.09));
            painter.fillRect(QRect(frame.left(), frame.top() + 3, 3, frame.height() - 6), palette::red);
        }
        int left = frame.left() + side;
        if (!line.image.isEmpty()) {
            painter.drawPixmap(left, frame.top() + (frame.height() - picture) / 2,
                               image(line.image, {picture, picture}, devicePixelRatioF()));
            left += picture + 8;
        }
        painter.setPen(i == wants_.chosen ? palette::gold : palette::warmWhite);
        const QRect text(left, frame.top(), frame.right() - side - left + 1, frame.height());
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                         QFontMetrics(painter.font()).elidedText(line.text, Qt::ElideRight, text.width()));
    }
    painter.setClipping(false);
    painter.setOpacity(1);
    const int whole = static_cast<int>(wants_.lines.size()) * lineHeight() + 2 * edge;
    if (whole > height()) {
        const int length = std::max(20, height() * height() / whole);
        const int top = (height() - length) * scrolled_ / (whole - height());
        painter.fillRect(QRect(width() - 6, top, 3, length), palette::withAlpha(palette::gold, 0.5));
    }
    painter.strokePath(background, QPen(palette::withAlpha(palette::gold, 0.45), 1));
}

void ListPopup::scrollTo(int top) {
    const int whole = static_cast<int>(wants_.lines.size()) * lineHeight() + 2 * edge;
    const int allowed = std::clamp(top, 0, std::max(0, whole - height()));
    if (std::exchange(scrolled_, allowed) != allowed) update();
}

void ListPopup::go(std::size_t index) {
    current_ = index;
    const QRect line = lineAt(index);
    if (line.top() < edge) scrollTo(scrolled_ + line.top() - edge);
    if (line.bottom() > height() - edge) scrollTo(scrolled_ + line.bottom() - height() + edge + 1);
    update();
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(static_cast<int>(index));
    QAccessible::updateAccessibility(&focus);
}

// To the next line that can be taken, and nowhere when there is none.
void ListPopup::step(int way) {
    for (auto i = static_cast<std::ptrdiff_t>(current_) + way; i >= 0 && i < std::ssize(wants_.lines); i += way)
        if (wants_.lines[static_cast<std::size_t>(i)].enabled) return go(static_cast<std::size_t>(i));
}

// The next line that begins so.
void ListPopup::typed(const QString& letters) {
    const std::size_t count = wants_.lines.size();
    for (std::size_t i = 1; i <= count; ++i) {
        const std::size_t index = (current_ + i) % count;
        if (wants_.lines[index].enabled && wants_.lines[index].text.startsWith(letters, Qt::CaseInsensitive))
            return go(index);
    }
}

void ListPopup::take(std::size_t index) {
    if (!wants_.lines.at(index).enabled) return;
    const auto taken = wants_.take;
    close(true);
    taken(index);
}

void ListPopup::close(bool byKeyboard) {
    if (std::exchange(closed_, true)) return;
    QCoreApplication::instance()->removeEventFilter(this);
    escape_.reset();
    hide();
    deleteLater();
    if (wants_.closed) wants_.closed(byKeyboard);
}

void ListPopup::pointAt(QPoint place) {
    if (const auto line = lineUnder(place); line && *line != current_) go(*line);
}

void ListPopup::mouseMoveEvent(QMouseEvent* event) { pointAt(event->position().toPoint()); }

void ListPopup::mousePressEvent(QMouseEvent* event) { pointAt(event->position().toPoint()); }

void ListPopup::mouseReleaseEvent(QMouseEvent* event) {
    if (const auto line = lineUnder(event->position().toPoint())) take(*line);
}

void ListPopup::wheelEvent(QWheelEvent* event) {
    scrollTo(scrolled_ - event->angleDelta().y() * lineHeight() / 120);
    event->accept();
}

// A key that is the list's own goes no further, not even as a shortcut of the window.
bool ListPopup::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void ListPopup::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
            return step(-1);
        case Qt::Key_Down:
            return step(1);
        case Qt::Key_Home:
            current_ = 0;
            return wants_.lines.front().enabled ? go(0) : step(1);
        case Qt::Key_End:
            current_ = wants_.lines.size() - 1;
            return wants_.lines.back().enabled ? go(current_) : step(-1);
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            return take(current_);
        default:
            if (!event->text().isEmpty() && event->text().front().isPrint()) typed(event->text());
            event->accept();
    }
}

void ListPopup::focusOutEvent(QFocusEvent*) { close(false); }

bool ListPopup::eventFilter(QObject* watched, QEvent* event) {
    if (watched == this || !watched->isWidgetType()) return false;
    const QEvent::Type type = event->type();
    // A press, and a turn of the wheel that moves the page below, go on to what lies there.
    const bool outside = type == QEvent::Wheel || (type == QEvent::MouseButtonPress && watched != anchor_);
    const bool gone = (watched == window() || watched == anchor_) && (type == QEvent::Resize || type == QEvent::Hide);
    if (outside || gone) close(false);
    return false;
}

QAccessibleInterface* ListPopup::makeAccessible() { return new AccessibleList(*this); }

}  // namespace vantor
