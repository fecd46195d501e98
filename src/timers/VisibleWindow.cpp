#include "timers/VisibleWindow.h"

#include <algorithm>
#include <iterator>

#include "data/SettingKeys.h"

namespace vantor {

double windowMinutes(const Defaults& defaults, WindowKind kind) {
    constexpr double unset = 3.0;
    if (kind == WindowKind::watched) return defaults.get<double>(settings::timerWatchedWindowDuration).value_or(unset);
    return defaults.get<double>(settings::timerWindowDuration).value_or(unset) * 60;
}

int currentMinute(const LocalTime& local, int utcOffsetSeconds) {
    const int minute = local.hour * 60 + local.minute;
    const int offsetHours = utcOffsetSeconds / 3600;
    // before local 00:00 UTC the hours belong to the day that began yesterday
    return local.hour < offsetHours ? minute + 1440 : minute;
}

int currentMinute(const Clock& clock, Clock::Seconds at) {
    return currentMinute(clock.localTime(at), clock.utcOffsetSeconds(at));
}

bool isVisible(const TimelineEvent& occurrence, double now, double windowMinutes) {
    return now < occurrence.start() && occurrence.id < now + windowMinutes + 1;
}

std::vector<TimelineEvent> visibleWindow(std::span<const TimelineEvent> timeline, double now, double windowMinutes) {
    std::vector<TimelineEvent> kept;
    std::ranges::copy_if(timeline, std::back_inserter(kept),
                         [&](const TimelineEvent& occurrence) { return isVisible(occurrence, now, windowMinutes); });
    return kept;
}

}  // namespace vantor
