#pragma once
// Which occurrences the timers list shows now: the shown window, narrowed by the search. Main thread; it holds no texts
// but those that the search compares, since a list may be long and only a few rows of it are on the screen.

#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "timers/DataState.h"
#include "timers/EmptyList.h"
#include "timers/Timeline.h"
#include "timers/WordSearch.h"

namespace vantor {

enum class RowPhase {
    gathering,  // the gathering time has passed, the event has not begun
    next,       // the first to gather after that
    later,
};

class TimersList {
public:
    // True when the search has changed.
    bool search(std::string_view query);
    void update(std::shared_ptr<const Timeline> timeline, int now, double windowMinutes);

    [[nodiscard]] std::size_t size() const { return shown_.size(); }
    [[nodiscard]] const TimelineEvent& at(std::size_t place) const { return *shown_[place]; }
    [[nodiscard]] RowPhase phase(std::size_t place) const;
    [[nodiscard]] std::size_t gathering() const { return gathering_; }
    // Whether the occurrence is in the shown window, also one that the search leaves out.
    [[nodiscard]] bool isAhead(double id) const;
    [[nodiscard]] std::size_t inWindow() const { return window_.size(); }
    // Nothing while there are rows.
    [[nodiscard]] std::optional<EmptyReason> empty(DataState state) const;

private:
    [[nodiscard]] bool finds(const TimelineEvent& occurrence);

    std::shared_ptr<const Timeline> timeline_;
    WordSearch search_;
    // By event, which the occurrences share; of this timeline.
    std::unordered_map<const ScheduledEvent*, QString> folded_;
    // Ascending by id, within the timeline: the shown window, and what the search finds of it.
    std::vector<const TimelineEvent*> window_;
    std::vector<const TimelineEvent*> shown_;
    std::size_t gathering_ = 0;
    std::size_t next_ = 0;
};

}  // namespace vantor
