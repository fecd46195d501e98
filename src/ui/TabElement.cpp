#include "ui/TabElement.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Images.h"
#include "ui/NotificationBadge.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

int rowHeight() { return withText(42); }
int columnHeight() { return withText(38); }
int imageSize() { return withText(20); }
constexpr int imageGap = 7;
constexpr int badgeGap = 6;
constexpr int textMargin = 5;  // at the least, between the text and the tab's edges
constexpr int fontSize = 14;

}  // namespace

TabElement::TabElement(const QString& text, QString image, QWidget* parent)
    : Pressable(parent, QAccessible::PageTab), image_(std::move(image)) {
    setText(text);
    setCheckable(true);
    setAutoExclusive(true);
}

void TabElement::setBadge(const QString& text) {
    if (std::exchange(badge_, text) == text) return;
    setAccessibleDescription(text);
    updateGeometry();
    update();
}

void TabElement::setColumn(bool column) {
    column_ = column;
    setSizePolicy(column ? QSizePolicy::Expanding : QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TabElement::setCompact(bool compact) {
    if (std::exchange(compact_, compact && !image_.isEmpty()) == compact_) return;
    setToolTip(compact_ ? text() : QString());
    updateGeometry();
    update();
}

int TabElement::contentWidth(const QString& shown) const {
    const int picture = image_.isEmpty() ? 0 : imageSize() + (shown.isEmpty() ? 0 : imageGap);
    const int badge = badge_.isEmpty() ? 0 : NotificationBadge::sizeOf(badge_).width() + badgeGap;
    return QFontMetrics(sansFont(fontSize)).horizontalAdvance(shown) + picture + badge;
}

QSize TabElement::sizeHint() const {
    const int height = std::max(column_ ? columnHeight() : rowHeight(), QFontMetrics(sansFont(fontSize)).height() + 18);
    return {contentWidth(shownText()) + 30, height};
}

int TabElement::fullWidth() const { return contentWidth(text()) + 2 * textMargin; }

int TabElement::leastWidth() const { return contentWidth(shownText()) + 2 * textMargin; }

QSize TabElement::minimumSizeHint() const { return {leastWidth(), sizeHint().height()}; }

void TabElement::paintMark(QPainter& painter) const {
    if (column_) {
        QLinearGradient glow(0, 0, width(), 0);
        glow.setColorAt(0, palette::withAlpha(palette::red, 0.4));
        glow.setColorAt(1, palette::withAlpha(palette::red, 0));
        painter.fillRect(rect(), glow);
        painter.fillRect(QRect(0, 4, 3, height() - 8), palette::red);
        return;
    }
    QLinearGradient line(0, 0, width(), 0);
    line.setColorAt(0, palette::withAlpha(palette::red, 0));
    line.setColorAt(0.25, palette::red);
    line.setColorAt(0.75, palette::red);
    line.setColorAt(1, palette::withAlpha(palette::red, 0));
    painter.fillRect(QRect(0, height() - 3, width(), 3), line);
}

void TabElement::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ControlState state = Pressable::state();
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    if (!state.checked) paintHover(painter, rect(), state.glow);
    if (state.checked && ownMark_) paintMark(painter);

    const int down = state.pressed ? 1 : 0;
    int left = column_ ? 16 : std::max(textMargin, (width() - contentWidth(shownText())) / 2);
    if (!image_.isEmpty()) {
        const QString name = state.checked ? image_ + QStringLiteral(".selected") : image_;
        painter.drawPixmap(left, (height() - imageSize()) / 2 + down,
                           image(name, {imageSize(), imageSize()}, devicePixelRatioF()));
        left += imageSize() + (compact_ ? 0 : imageGap);
    }
    painter.setFont(sansFont(fontSize));
    painter.setPen(state.checked ? palette::gold
                                 : palette::between(palette::sand.lighter(112), palette::warmWhite, state.glow));
    const int badge = badge_.isEmpty() ? 0 : NotificationBadge::sizeOf(badge_).width() + badgeGap;
    const QString shown =
        QFontMetrics(painter.font()).elidedText(shownText(), Qt::ElideRight, width() - left - badge - textMargin);
    painter.drawText(rect().adjusted(left, down, 0, down), Qt::AlignVCenter | Qt::AlignLeft, shown);
    if (!badge_.isEmpty()) {
        left += QFontMetrics(painter.font()).horizontalAdvance(shown) + badgeGap;
        NotificationBadge::paint(
            painter, QPointF(left + NotificationBadge::sizeOf(badge_).width() / 2.0, height() / 2.0 + down), badge_);
    }
    if (state.focused) paintFocusRing(painter, QRectF(rect()).adjusted(4, 6, -4, -7));
}

// The arrows belong to the row or column.
void TabElement::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Home:
        case Qt::Key_End:
            return event->ignore();
        default:
            Pressable::keyPressEvent(event);
    }
}

}  // namespace vantor
