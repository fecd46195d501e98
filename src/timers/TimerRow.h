#pragma once
// What a list of occurrences shows, as plain texts. Pure; any thread.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "timers/TimelineEvent.h"

namespace vantor {

struct TimerRow {
    double id = 0;
    std::string time;  // of the start
    std::string name;
    std::string section;
    std::string getThereBy;  // empty when players need not gather early
    std::string remaining;   // until the start
    std::string chatlink;    // empty when there is none

    bool operator==(const TimerRow&) const = default;
};

// The rows of the visible window, in timeline order. A time that cannot be written stops the program with status 70.
[[nodiscard]] std::vector<TimerRow> timerRows(std::span<const TimelineEvent> timeline, int currentMinute,
                                              double windowMinutes);

// "now", "5 min", "1 h", "2 h 05 min".
[[nodiscard]] std::string remainingText(std::int64_t minutes);

}  // namespace vantor
