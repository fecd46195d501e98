#include "timers/view/OccurrenceListView.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <iterator>
#include <utility>

#include "timers/view/AchievementBlockView.h"
#include "ui/Palette.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

constexpr int fadeDepth = 20;
constexpr std::size_t beside = 1;  // rows kept beyond each edge, so that the keyboard finds the next one

// The upper and the lower edge, where rows are cut, as soft fades over them.
class CutEdges final : public QWidget {
public:
    CutEdges(const QScrollBar& bar, QWidget* parent) : QWidget(parent), bar_(bar) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const auto fade = [&](const QRect& area, int from, int to) {
            QLinearGradient gradient(0, from, 0, to);
            gradient.setColorAt(0, palette::withAlpha(palette::sheet, 0.9));
            gradient.setColorAt(1, palette::withAlpha(palette::sheet, 0));
            painter.fillRect(area, gradient);
        };
        if (bar_.value() > 0) fade({0, 0, width(), fadeDepth}, 0, fadeDepth);
        if (bar_.value() < bar_.maximum())
            fade({0, height() - fadeDepth, width(), fadeDepth}, height(), height() - fadeDepth);
    }

private:
    const QScrollBar& bar_;
};

}  // namespace

OccurrenceListView::OccurrenceListView(Rows rows, OccurrenceRowView::Actions actions, QWidget* parent)
    : QAbstractScrollArea(parent), rows_(std::move(rows)), actions_(std::move(actions)) {
    actions_.toggleOpen = [this](double id) { toggleOpen(id); };
    setAccessibleName(QStringLiteral("Timers"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBar(new SlimScrollBar(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Also when there is nothing to scroll: the rows' controls would jump sideways.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    verticalScrollBar()->setSingleStep(RowLayout::height() / 2);
    viewport()->setAutoFillBackground(false);
    QPalette transparent = palette();
    transparent.setColor(QPalette::Base, Qt::transparent);
    transparent.setColor(QPalette::Window, Qt::transparent);
    setPalette(transparent);
    edges_ = new CutEdges(*verticalScrollBar(), this);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, edges_, [this] { edges_->update(); });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, edges_, [this] { edges_->update(); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) { followFocus(now); });
}

void OccurrenceListView::refresh() {
    measure();
    keepPlace();
    arrange();
}

void OccurrenceListView::toggleOpen(double id) {
    const auto place = placeOf(id);
    if (open_.erase(id) == 0) {
        open_.insert(id);
        if (place) rows_.opened(rows_.occurrence(*place).event());
    }
    refresh();
    if (place && isOpen(id)) bringIntoView(*place);
}

std::vector<const OccurrenceRowView*> OccurrenceListView::existingRows() const {
    std::vector<const OccurrenceRowView*> views;
    std::ranges::copy_if(existing_, std::back_inserter(views), [](const auto* view) { return !view->isHidden(); });
    std::ranges::sort(views, {}, [](const auto* view) { return view->y(); });
    return views;
}

void OccurrenceListView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    edges_->setGeometry(viewport()->geometry());
    refresh();
}

void OccurrenceListView::scrollContentsBy(int, int) {
    if (!arranging_) arrange();
}

void OccurrenceListView::keyPressEvent(QKeyEvent* event) {
    if (!focus_ || rows_.count() == 0) return event->ignore();
    const auto here = static_cast<std::ptrdiff_t>(placeFrom(focus_->id));
    const auto last = static_cast<std::ptrdiff_t>(rows_.count()) - 1;
    const std::ptrdiff_t page = std::max(1, viewport()->height() / RowLayout::height() - 1);
    std::ptrdiff_t there = 0;
    switch (event->key()) {
        case Qt::Key_Up:
            there = here - 1;
            break;
        case Qt::Key_Down:
            there = here + 1;
            break;
        case Qt::Key_PageUp:
            there = here - page;
            break;
        case Qt::Key_PageDown:
            there = here + page;
            break;
        case Qt::Key_Home:
            break;
        case Qt::Key_End:
            there = last;
            break;
        default:
            return event->ignore();
    }
    focusRow(static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(there, 0, last)), focus_->control);
}

void OccurrenceListView::measure() {
    std::erase_if(open_, [&](double id) { return !rows_.isAhead(id); });
    layout_.setWidth(viewport()->width());
    const std::size_t count = rows_.count();
    tops_.resize(count + 1);
    int top = 0;
    for (std::size_t place = 0; place < count; ++place) {
        tops_[place] = top;
        const TimelineEvent& occurrence = rows_.occurrence(place);
        top += layout_.rowHeight(occurrence.event());
        if (isOpen(occurrence.id)) top += AchievementBlockView::heightOf(rows_.block(occurrence.event()));
    }
    tops_[count] = top;
    arranging_ = true;
    verticalScrollBar()->setPageStep(std::max(1, viewport()->height()));
    verticalScrollBar()->setRange(0, std::max(0, top - viewport()->height()));
    arranging_ = false;
}

// The row at the upper edge stays there, or the first that comes after it when it is gone.
void OccurrenceListView::keepPlace() {
    if (!anchor_ || rows_.count() == 0) return;
    const std::size_t place = placeFrom(*anchor_);
    const bool same = place < rows_.count() && rows_.occurrence(place).id == *anchor_;
    arranging_ = true;
    verticalScrollBar()->setValue(tops_[place] + (same ? anchorOffset_ : 0));
    arranging_ = false;
}

void OccurrenceListView::arrange() {
    if (std::exchange(arranging_, true)) return;
    const std::optional<std::size_t> focused = focus_ ? placeOf(focus_->id) : std::nullopt;
    const std::vector<std::size_t> places = wantedPlaces(focused);
    const int scrolled = verticalScrollBar()->value();
    if (rows_.count() > 0) {
        const std::size_t first = placeAt(scrolled);
        anchor_ = scrolled > 0 ? std::optional(rows_.occurrence(first).id) : std::nullopt;
        anchorOffset_ = scrolled - tops_[first];
    }

    const std::vector<OccurrenceRowView*> views = viewsFor(places);
    bool newOrder = false;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::size_t place = places[i];
        const TimelineEvent& occurrence = rows_.occurrence(place);
        const QRect frame(0, tops_[place] - scrolled, viewport()->width(), tops_[place + 1] - tops_[place]);
        if (views[i]->geometry() != frame) views[i]->setGeometry(frame);
        newOrder |= views[i]->setRow(
            rows_.row(place), isOpen(occurrence.id) ? std::optional(rows_.block(occurrence.event())) : std::nullopt);
        newOrder |= views[i]->isHidden();
        views[i]->show();
    }
    for (OccurrenceRowView* const view : existing_)
        if (std::ranges::find(views, view) == views.end()) view->hide();
    if (newOrder) orderTabs(views);
    arranging_ = false;

    // The event with the focus began: its successor takes it.
    if (focus_ && !focused && rows_.count() > 0)
        focusRow(std::min(placeFrom(focus_->id), rows_.count() - 1), focus_->control);
}

// The rows on the screen, those beside it, and the one with the focus wherever it is by now.
std::vector<std::size_t> OccurrenceListView::wantedPlaces(std::optional<std::size_t> focused) const {
    std::vector<std::size_t> places;
    if (rows_.count() == 0 || viewport()->height() <= 0) return places;
    const int scrolled = verticalScrollBar()->value();
    const std::size_t first = placeAt(scrolled);
    const std::size_t last = std::min(placeAt(scrolled + viewport()->height() - 1) + beside, rows_.count() - 1);
    for (std::size_t place = first - std::min(first, beside); place <= last; ++place) places.push_back(place);
    if (focused && std::ranges::find(places, *focused) == places.end()) {
        places.push_back(*focused);
        std::ranges::sort(places);
    }
    return places;
}

// Each occurrence keeps its widget while it has one; the rest take what is free.
std::vector<OccurrenceRowView*> OccurrenceListView::viewsFor(const std::vector<std::size_t>& places) {
    std::vector<OccurrenceRowView*> views(places.size(), nullptr);
    std::vector<OccurrenceRowView*> pool = existing_;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const double id = rows_.occurrence(places[i]).id;
        const auto own = std::ranges::find_if(
            pool, [&](const OccurrenceRowView* view) { return !view->isHidden() && view->row().id == id; });
        if (own == pool.end()) continue;
        views[i] = *own;
        pool.erase(own);
    }
    for (OccurrenceRowView*& view : views) {
        if (view) continue;
        if (pool.empty()) {
            view = new OccurrenceRowView(actions_, layout_, viewport());
            view->hide();
            existing_.push_back(view);
        } else {
            view = pool.back();
            pool.pop_back();
        }
    }
    return views;
}

void OccurrenceListView::orderTabs(const std::vector<OccurrenceRowView*>& views) {
    QWidget* before = predecessor_;
    for (const OccurrenceRowView* const view : views)
        for (QWidget* const control : view->controls()) {
            if (before) QWidget::setTabOrder(before, control);
            before = control;
        }
}

void OccurrenceListView::followFocus(const QWidget* now) {
    // Without a focus at all the window is not active; it comes back to where it was.
    if (arranging_ || !now) return;
    focus_.reset();
    if (!viewport()->isAncestorOf(now)) return;
    for (const OccurrenceRowView* const view : existing_) {
        const auto control = view->controlAt(now);
        const auto place = control ? placeOf(view->row().id) : std::nullopt;
        if (!place) continue;
        focus_ = {view->row().id, *control};
        bringIntoView(*place);
        return;
    }
}

void OccurrenceListView::bringIntoView(std::size_t place) {
    QScrollBar& bar = *verticalScrollBar();
    const int top = tops_[place];
    const int bottom = tops_[place + 1];
    if (top < bar.value() || bottom - top > viewport()->height())
        bar.setValue(top);
    else if (bottom > bar.value() + viewport()->height())
        bar.setValue(bottom - viewport()->height());
}

void OccurrenceListView::focusRow(std::size_t place, std::size_t control) {
    const double id = rows_.occurrence(place).id;
    focus_ = {id, control};
    bringIntoView(place);
    arrange();
    for (OccurrenceRowView* const view : existing_)
        if (!view->isHidden() && view->row().id == id) return view->focusControl(control);
}

void OccurrenceListView::focusFirstWatch() {
    if (rows_.count() > 0) focusRow(0, OccurrenceRowView::watchControl);
}

std::size_t OccurrenceListView::placeFrom(double id) const {
    std::size_t low = 0;
    for (std::size_t high = rows_.count(); low < high;) {
        const std::size_t middle = low + (high - low) / 2;
        if (rows_.occurrence(middle).id < id)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

std::optional<std::size_t> OccurrenceListView::placeOf(double id) const {
    const std::size_t place = placeFrom(id);
    if (place == rows_.count() || rows_.occurrence(place).id != id) return std::nullopt;
    return place;
}

std::size_t OccurrenceListView::placeAt(int y) const {
    const auto next = std::upper_bound(tops_.begin() + 1, tops_.end() - 1, y);
    return static_cast<std::size_t>(next - tops_.begin()) - 1;
}

}  // namespace vantor
