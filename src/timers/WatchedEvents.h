#pragma once
// The events that the player watches, by their names, and which of their occurrences are about to happen. Functions on
// values; the two that take the settings belong to the main thread.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "timers/TimelineEvent.h"

namespace vantor {

using WatchedNames = std::vector<std::string>;  // in the order in which they were marked

// A stored text that is no JSON list of texts reads as the empty list.
[[nodiscard]] WatchedNames readWatchedNames(const Defaults& defaults);
[[nodiscard]] bool isWatched(const WatchedNames& names, std::string_view name);
// Appended at the end, or without its first entry.
[[nodiscard]] WatchedNames withToggled(WatchedNames names, const std::string& name);
// Reads the list afresh, toggles the name and writes the list back at once.
[[nodiscard]] Defaults::Verdict toggleWatched(Defaults& defaults, const std::string& name);

// In timeline order. `windowMinutes` is the watched window's length.
[[nodiscard]] std::vector<TimelineEvent> watchedOccurrences(std::span<const TimelineEvent> timeline,
                                                            const WatchedNames& names, double now,
                                                            double windowMinutes);

// The next second at which the list of watched occurrences could change, if nothing but the time changes: an occurrence
// enters or leaves, or the zone's offset changes (and with it the timeline). Always later than `at`; nothing when no
// watched occurrence is ahead within the next day and no change of the zone either.
[[nodiscard]] std::optional<Clock::Seconds> nextWatchedChange(std::span<const TimelineEvent> timeline,
                                                              const WatchedNames& names, double windowMinutes,
                                                              const Clock& clock, Clock::Seconds at);

}  // namespace vantor
