#include "timers/view/OccurrenceRowView.h"

#include <QtCore/QEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QLinearGradient>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <array>
#include <utility>

#include "timers/view/AchievementBlockView.h"
#include "timers/view/RowLayout.h"
#include "timers/view/WatchAchievementButton.h"
#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/Images.h"

namespace vantor {

namespace {

QString toText(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

QColor accentOf(const OccurrenceRow& row) {
    if (!row.accent) return palette::sand;
    return {(*row.accent)[0], (*row.accent)[1], (*row.accent)[2]};
}

QColor remainingColour(RowPhase phase) {
    switch (phase) {
        case RowPhase::gathering:
            return palette::brightAmber;
        case RowPhase::next:
            return palette::gold;
        case RowPhase::later:
            break;
    }
    return palette::sand;
}

}  // namespace

OccurrenceRowView::OccurrenceRowView(const Actions& actions, RowLayout& layout, QWidget* parent)
    : QWidget(parent),
      actions_(actions),
      layout_(layout),
      disclosure_(new RowButton(QStringLiteral("chevron.right"), this)),
      wiki_(new RowButton(QStringLiteral("icon.wiki"), this)),
      watch_(new WatchAchievementButton(actions.defaults, this)),
      block_(new AchievementBlockView(this)) {
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
    disclosure_->setPlain(true);
    wiki_->setToolTip(QStringLiteral("Open in the wiki"));
    block_->hide();
    for (QWidget* const control : std::array<QWidget*, 3>{disclosure_, wiki_, watch_})
        control->installEventFilter(this);
    connect(disclosure_, &QAbstractButton::clicked, this, [this] { actions_.toggleOpen(row_.id); });
    connect(wiki_, &QAbstractButton::clicked, this, [this] { actions_.openWiki(row_.wikiPage); });
}

bool OccurrenceRowView::setRow(const OccurrenceRow& row, std::optional<AchievementBlock> block) {
    const bool opened = block.has_value();
    if (block) block_->setBlock(*std::move(block));
    const bool openChanged = opened != !block_->isHidden();
    const bool changed = !std::exchange(filled_, true) || row_ != row;
    if (!changed && !openChanged) return false;

    const bool newLink = changed && row_.chatlink != row.chatlink;
    row_ = row;
    const QString name = toText(row_.name) + QStringLiteral(", ") + toText(row_.time);
    setAccessibleName(toText(spokenText(row_)));
    if (newLink) followChatLink();
    disclosure_->setVisible(row_.opens);
    disclosure_->setImage(opened ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"));
    disclosure_->setSpokenName(
        (opened ? QStringLiteral("Hide the rewards of ") : QStringLiteral("Show the rewards of ")) + name);
    wiki_->setVisible(!row_.wikiPage.empty());
    wiki_->setSpokenName(QStringLiteral("Open in the wiki: ") + name);
    watch_->setVisible(!row_.eventName.empty());
    watch_->setEvent(row_.eventName, row_.watched, name);
    if (waypoint_) waypoint_->setAccessibleName(QStringLiteral("Chat link of ") + name);
    block_->setVisible(opened);
    placeControls();
    update();
    return changed;
}

std::vector<QWidget*> OccurrenceRowView::controls() const {
    std::vector<QWidget*> shown;
    for (QWidget* const control : std::array<QWidget*, 4>{disclosure_, waypoint_, wiki_, watch_})
        if (control && !control->isHidden()) shown.push_back(control);
    return shown;
}

std::optional<std::size_t> OccurrenceRowView::controlAt(const QWidget* widget) const {
    const std::array<const QWidget*, 4> all{disclosure_, waypoint_, wiki_, watch_};
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i] && (all[i] == widget || all[i]->isAncestorOf(widget))) return i;
    return std::nullopt;
}

void OccurrenceRowView::focusControl(std::size_t control) {
    const std::array<QWidget*, 4> all{disclosure_, waypoint_, wiki_, watch_};
    for (std::size_t distance = 0; distance < all.size(); ++distance)
        for (const std::size_t place : {control - distance, control + distance})
            if (place < all.size() && all[place] && !all[place]->isHidden())
                return all[place]->setFocus(Qt::TabFocusReason);
}

bool OccurrenceRowView::event(QEvent* event) {
    // The chat link's control grows while it says what it did.
    if (event->type() == QEvent::LayoutRequest) {
        placeControls();
        update();
    }
    return QWidget::event(event);
}

// The keys that move among rows are the list's; a control would take some of them for its own neighbours.
bool OccurrenceRowView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        for (const int movement :
             {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End})
            if (key == movement) {
                event->ignore();
                return true;
            }
    }
    return QWidget::eventFilter(watched, event);
}

bool OccurrenceRowView::opensAt(QPoint place) const {
    return row_.opens && QRect(0, 0, actionsLeft(), headHeight()).contains(place);
}

// Elsewhere the window is dragged.
void OccurrenceRowView::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(event->button() == Qt::LeftButton && opensAt(event->position().toPoint()));
    pressed_ = event->isAccepted();
}

void OccurrenceRowView::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(pressed_, false)) return event->ignore();
    if (opensAt(event->position().toPoint())) actions_.toggleOpen(row_.id);
}

void OccurrenceRowView::resizeEvent(QResizeEvent*) { placeControls(); }

void OccurrenceRowView::followChatLink() {
    // It may be in the middle of its own click.
    if (waypoint_) {
        waypoint_->hide();
        waypoint_->deleteLater();
        waypoint_ = nullptr;
    }
    if (row_.chatlink.empty()) return;
    waypoint_ = actions_.makeWaypointButton(toText(row_.chatlink), this);
    waypoint_->installEventFilter(this);
    waypoint_->show();
}

void OccurrenceRowView::placeControls() {
    const int middle = RowLayout::height() / 2;
    int right = width() - 7;
    const auto place = [&](QWidget* control) {
        if (!control || control->isHidden()) return;
        const QSize size = control->sizeHint().expandedTo(control->minimumSize());
        right -= size.width();
        control->setGeometry(right, middle - size.height() / 2, size.width(), size.height());
    };
    place(watch_);
    place(wiki_);
    place(waypoint_);
    // What is cut for want of room is read in full here.
    const int room = actionsLeft() - 8 - RowLayout::textLeft();
    const int wanted = QFontMetrics(sansFont(15, true)).horizontalAdvance(toText(row_.name)) + 12 +
                       QFontMetrics(sansFont(13)).horizontalAdvance(toText(row_.place));
    setToolTip(wanted > room ? toText(row_.name + "\n" + row_.place) : QString());
    disclosure_->move(2, middle - disclosure_->height() / 2);
    block_->setGeometry(RowLayout::textLeft(), headHeight() - 2, width() - RowLayout::textLeft() - 10,
                        std::max(0, height() - headHeight()));
}

int OccurrenceRowView::actionsLeft() const {
    int left = width() - 10;
    for (const QWidget* const control : std::array<const QWidget*, 3>{waypoint_, wiki_, watch_})
        if (control && !control->isHidden()) left = std::min(left, control->x());
    return left;
}

int OccurrenceRowView::headHeight() const { return layout_.rowHeight(!row_.getThereBy.empty(), row_.badges); }

void OccurrenceRowView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintBackground(painter);
    paintTexts(painter);
}

void OccurrenceRowView::paintBackground(QPainter& painter) const {
    const QRect frame = rect();
    const auto glow = [&](const QColor& colour, double start, double middle, double end) {
        QLinearGradient gradient(frame.topLeft(), frame.topRight());
        gradient.setColorAt(0, palette::withAlpha(colour, start));
        gradient.setColorAt(0.55, palette::withAlpha(colour, middle));
        gradient.setColorAt(1, palette::withAlpha(colour, end));
        painter.fillRect(frame, gradient);
    };
    if (row_.phase == RowPhase::gathering) glow(palette::red, 0.42, 0.16, 0.05);
    if (row_.phase == RowPhase::next) glow(palette::gold, 0.08, 0.02, 0);
    if (underMouse()) paintHover(painter, frame);
    painter.fillRect(QRect(frame.left(), frame.bottom(), frame.width(), 1), palette::withAlpha(palette::gold, 0.10));
    painter.fillRect(QRect(frame.left(), frame.top() + 8, 4, frame.height() - 16), accentOf(row_));
}

void OccurrenceRowView::paintTexts(QPainter& painter) const {
    painter.setPen(palette::gold);
    drawFigures(painter, serifFont(21), QPointF(RowLayout::timeRight(), withText(27)), toText(row_.time));
    painter.setFont(sansFont(12));
    painter.setPen(remainingColour(row_.phase));
    painter.drawText(QRect(36, withText(31), RowLayout::timeRight() - 36, RowLayout::lineHeight()),
                     Qt::AlignRight | Qt::AlignVCenter, toText(row_.remaining));

    const RowLayout::SecondLine& second = layout_.secondLine(toText(row_.getThereBy), row_.badges);
    const int left = RowLayout::textLeft();
    const int right = actionsLeft() - 8;
    if (right <= left) return;
    painter.setClipRect(QRect(0, 0, right, height()));
    const int top = withText(second.lines == 0 ? 19 : 8);

    const int nameHeight = withText(20);

    const QFont nameFont = sansFont(15, true);
    const QFontMetrics nameMetrics(nameFont);
    const QString name = nameMetrics.elidedText(toText(row_.name), Qt::ElideRight, right - left);
    painter.setFont(nameFont);
    painter.setPen(palette::warmWhite);
    painter.drawText(QRect(left, top, right - left, nameHeight), Qt::AlignVCenter, name);
    if (const int placeLeft = left + nameMetrics.horizontalAdvance(name) + 12; placeLeft + 24 < right) {
        painter.setFont(sansFont(13));
        painter.setPen(palette::sand);
        painter.drawText(QRect(placeLeft, top, right - placeLeft, nameHeight), Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(toText(row_.place), Qt::ElideRight, right - placeLeft));
    }

    const QPoint origin(left, top + RowLayout::lineHeight());
    painter.setFont(sansFont(13));
    painter.setPen(palette::amber);
    painter.drawText(second.getThereBy.translated(origin), Qt::AlignVCenter, toText(row_.getThereBy));
    painter.setFont(sansFont(12));
    painter.setPen(palette::sand);
    for (std::size_t i = 0; i < row_.badges.size(); ++i) {
        const QRect frame = second.badges[i].translated(origin);
        painter.drawPixmap(frame.left(), frame.center().y() - 7,
                           image(toText(row_.badges[i].image), {14, 14}, devicePixelRatioF()));
        painter.drawText(frame.adjusted(19, 0, 0, 0), Qt::AlignVCenter, toText(row_.badges[i].label));
    }
}

}  // namespace vantor
