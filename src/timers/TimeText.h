#pragma once
// How a minute of the timeline is written. Pure; any thread.

#include <cstdint>
#include <optional>
#include <string>

#include "timers/TimelineEvent.h"

namespace vantor {

// "hours:minutes" of a number of minutes, both truncated toward zero and taken modulo 24 and 60 with the sign kept, so
// that -299.97 reads "-4:-59". Nothing for a number that is not finite or beyond 64-bit integers: the catalogue is
// broken then.
[[nodiscard]] std::optional<std::string> timeText(double minutes);

[[nodiscard]] inline std::optional<std::string> startText(const TimelineEvent& occurrence) {
    return timeText(occurrence.start());
}

[[nodiscard]] inline std::optional<std::string> gatheringText(const TimelineEvent& occurrence) {
    return timeText(occurrence.id);
}

// The same of a minute counted from any local midnight, as a clock shows it: 10 before midnight is "23:50".
[[nodiscard]] std::string clockText(std::int64_t minute);

// "now", "5 min", "1 h", "2 h 05 min".
[[nodiscard]] std::string remainingText(std::int64_t minutes);

}  // namespace vantor
