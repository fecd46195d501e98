#pragma once
// The day's occurrences, computed from the catalogue. Pure: equal arguments give equal results. Any thread.

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "data/Catalogue.h"
#include "data/WebApi.h"
#include "timers/TimelineEvent.h"
#include "timers/TimerFilters.h"

namespace vantor {

struct Timeline {
    std::vector<TimelineEvent> events;  // by gathering minute, then section, then event
    // Every achievement that an event of an active section advances, in catalogue order, shown or not.
    std::vector<std::int64_t> achievementIds;

    bool operator==(const Timeline&) const = default;
};

// An active section whose schedule cannot be computed. The catalogue is broken and the program cannot go on.
struct TimelineFault {
    std::string sectionName;
    std::int64_t sectionId = 0;
    std::string stepPlace;  // such as "sequences.pattern[2]"
    std::string what;

    bool operator==(const TimelineFault&) const = default;
};

// Without a line break at its end.
[[nodiscard]] std::string describe(const TimelineFault& fault);

// utcOffsetSeconds: of the local zone at the present moment, east positive. Of several faults the first is reported.
[[nodiscard]] std::variant<Timeline, TimelineFault> computeTimeline(std::span<const EventsSection> sections,
                                                                    std::span<const AchievementCompletition> progress,
                                                                    const TimerFilters& filters, int utcOffsetSeconds);

}  // namespace vantor
