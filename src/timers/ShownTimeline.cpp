#include "timers/ShownTimeline.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace vantor {

Timeline shownTimeline(const Timeline& day, int utcOffsetSeconds) {
    const std::int64_t end = utcOffsetSeconds / 60 + minutesPerDay;
    Timeline shown{{}, day.achievementIds};
    shown.events.reserve(day.events.size() * 3);
    for (const std::int64_t shift : {-minutesPerDay, std::int64_t{0}, minutesPerDay})
        for (TimelineEvent occurrence : day.events) {
            // A minute beyond 64 bits cannot be shown.
            std::int64_t gathering = 0;
            if (occurrence.startMinute >= end ||
                __builtin_add_overflow(occurrence.gatheringMinute(), shift, &gathering))
                continue;
            occurrence.startMinute += shift;
            occurrence.id = packedId(gathering, occurrence.scheduled->sectionId, occurrence.event().id);
            shown.events.push_back(std::move(occurrence));
        }
    std::ranges::stable_sort(shown.events, {}, &TimelineEvent::id);
    // A schedule may have steps of no length.
    std::set<std::tuple<std::int64_t, std::int64_t, std::int64_t>> seen;
    std::erase_if(shown.events, [&](const TimelineEvent& each) {
        return !seen.emplace(each.scheduled->sectionId, each.event().id, each.startMinute).second;
    });
    return shown;
}

}  // namespace vantor
