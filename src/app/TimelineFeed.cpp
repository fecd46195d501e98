#include "app/TimelineFeed.h"

#include <utility>

#include "timers/ShownTimeline.h"

namespace vantor {

TimelineFeed::TimelineFeed(const Clock& clock, const Defaults& defaults, Stop stop, Published published)
    : clock_(clock), defaults_(defaults), stop_(std::move(stop)), published_(std::move(published)) {}

std::vector<std::int64_t> TimelineFeed::compute(const std::vector<EventsSection>& sections,
                                                const std::vector<AchievementCompletition>& eventProgress) {
    const int offset = clock_.utcOffsetSeconds(clock_.now());
    auto computed = computeTimeline(sections, eventProgress, readTimerFilters(defaults_), offset);
    if (const auto* fault = std::get_if<TimelineFault>(&computed)) {
        stop_(describe(*fault));
        return {};
    }
    auto timeline = std::make_shared<const Timeline>(std::get<Timeline>(std::move(computed)));
    auto shown = std::make_shared<const Timeline>(shownTimeline(*timeline, offset));
    {
        const std::lock_guard lock(mutex_);
        timeline_ = timeline;
        shown_ = std::move(shown);
        utcOffsetSeconds_ = offset;
    }
    published_();
    return timeline->achievementIds;
}

std::shared_ptr<const Timeline> TimelineFeed::timeline() const {
    const std::lock_guard lock(mutex_);
    return timeline_;
}

std::shared_ptr<const Timeline> TimelineFeed::shown() const {
    const std::lock_guard lock(mutex_);
    return shown_;
}

bool TimelineFeed::zoneChanged() {
    const int offset = clock_.utcOffsetSeconds(clock_.now());
    const std::lock_guard lock(mutex_);
    if (!timeline_ || offset == utcOffsetSeconds_) return false;
    utcOffsetSeconds_ = offset;
    return true;
}

}  // namespace vantor
