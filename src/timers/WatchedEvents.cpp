#include "timers/WatchedEvents.h"

#include <algorithm>
#include <iterator>

#include "data/Decoder.h"
#include "data/SettingKeys.h"
#include "timers/VisibleWindow.h"

namespace vantor {

WatchedNames readWatchedNames(const Defaults& defaults) {
    const auto stored = defaults.get<std::string>(settings::watching);
    if (!stored) return {};
    return decodeJson<WatchedNames>(*stored).value.value_or(WatchedNames());
}

bool isWatched(const WatchedNames& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

WatchedNames withToggled(WatchedNames names, const std::string& name) {
    if (const auto found = std::ranges::find(names, name); found != names.end())
        names.erase(found);
    else
        names.push_back(name);
    return names;
}

Defaults::Verdict toggleWatched(Defaults& defaults, const std::string& name) {
    return defaults.setValue(settings::watching, encodeJson(withToggled(readWatchedNames(defaults), name)));
}

std::vector<TimelineEvent> watchedOccurrences(std::span<const TimelineEvent> timeline, const WatchedNames& names,
                                              double now, double windowMinutes) {
    std::vector<TimelineEvent> kept;
    if (names.empty()) return kept;
    std::ranges::copy_if(timeline, std::back_inserter(kept), [&](const TimelineEvent& occurrence) {
        return isVisible(occurrence, now, windowMinutes) && isWatched(names, occurrence.event().name);
    });
    return kept;
}

std::optional<Clock::Seconds> nextWatchedChange(std::span<const TimelineEvent> timeline, const WatchedNames& names,
                                                double windowMinutes, const Clock& clock, Clock::Seconds at) {
    constexpr Clock::Seconds minute = 60;
    constexpr Clock::Seconds day = 24 * 60 * minute;
    std::vector<TimelineEvent> watched;
    std::ranges::copy_if(timeline, std::back_inserter(watched),
                         [&](const TimelineEvent& occurrence) { return isWatched(names, occurrence.event().name); });
    if (watched.empty()) return std::nullopt;

    const auto shownAt = [&](Clock::Seconds moment) {
        const double now = currentMinute(clock, moment);
        std::vector<bool> shown(watched.size());
        for (std::size_t i = 0; i < watched.size(); ++i) shown[i] = isVisible(watched[i], now, windowMinutes);
        return shown;
    };
    const std::vector<bool> shownNow = shownAt(at);
    const int offset = clock.utcOffsetSeconds(at);
    // Minute by minute as the list itself will be looked at: the minute of the day may jump, at midnight, where the
    // timeline's day begins, and where the zone's offset changes. A zone's offset may have seconds: its own minutes.
    const Clock::Seconds local = at + offset;
    const Clock::Seconds intoMinute = (local % minute + minute) % minute;
    for (Clock::Seconds moment = at - intoMinute + minute; moment <= at + day + minute; moment += minute) {
        if (clock.utcOffsetSeconds(moment) != offset) return moment;
        if (shownAt(moment) != shownNow) return moment;
    }
    return std::nullopt;
}

}  // namespace vantor
