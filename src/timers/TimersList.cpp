#include "timers/TimersList.h"

#include <algorithm>
#include <utility>

#include "timers/VisibleWindow.h"

namespace vantor {

bool TimersList::search(std::string_view query) {
    WordSearch next(query);
    if (next == search_) return false;
    search_ = std::move(next);
    return true;
}

void TimersList::update(std::shared_ptr<const Timeline> timeline, int now, double windowMinutes) {
    if (timeline != timeline_) folded_.clear();
    timeline_ = std::move(timeline);
    shown_.clear();
    window_.clear();
    gathering_ = next_ = 0;
    if (!timeline_) return;
    for (const TimelineEvent& occurrence : timeline_->events) {
        if (!isVisible(occurrence, now, windowMinutes)) continue;
        window_.push_back(&occurrence);
        if (finds(occurrence)) shown_.push_back(&occurrence);
    }
    // The list is ordered by the gathering minute.
    const auto minuteOf = [](const TimelineEvent* occurrence) { return occurrence->gatheringMinute(); };
    const auto firstAhead = std::ranges::upper_bound(shown_, std::int64_t{now}, {}, minuteOf);
    gathering_ = static_cast<std::size_t>(firstAhead - shown_.begin());
    if (firstAhead == shown_.end()) return;
    const auto firstLater = std::ranges::upper_bound(firstAhead, shown_.end(), minuteOf(*firstAhead), {}, minuteOf);
    next_ = static_cast<std::size_t>(firstLater - firstAhead);
}

RowPhase TimersList::phase(std::size_t place) const {
    if (place < gathering_) return RowPhase::gathering;
    return place < gathering_ + next_ ? RowPhase::next : RowPhase::later;
}

bool TimersList::isAhead(double id) const {
    return std::ranges::binary_search(window_, id, {}, [](const TimelineEvent* occurrence) { return occurrence->id; });
}

std::optional<EmptyReason> TimersList::empty(DataState state) const {
    if (!shown_.empty()) return std::nullopt;
    if (!timeline_) return emptyReason(state);
    if (timeline_->events.empty()) return EmptyReason::filtersExcludeAll;
    return window_.empty() ? EmptyReason::nothingAhead : EmptyReason::nothingFound;
}

bool TimersList::finds(const TimelineEvent& occurrence) {
    if (search_.isEmpty()) return true;
    const ScheduledEvent* const scheduled = occurrence.scheduled.get();
    auto found = folded_.find(scheduled);
    if (found == folded_.end())
        // Separated, so that no word is found across two texts.
        found = folded_
                    .emplace(scheduled, foldedForSearch(scheduled->event.name + "\n" + scheduled->sectionName + "\n" +
                                                        scheduled->sectionCategory))
                    .first;
    return search_.finds(found->second);
}

}  // namespace vantor
