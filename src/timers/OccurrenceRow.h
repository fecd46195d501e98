#pragma once
// One row of the timers, as plain values: what is drawn, what is said to whoever cannot see it, and what its buttons
// act on. Any thread.

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "timers/RewardBadge.h"
#include "timers/TimelineEvent.h"
#include "timers/TimersList.h"

namespace vantor {

struct OccurrenceRow {
    double id = 0;
    RowPhase phase = RowPhase::later;
    std::string time;                          // of the start
    std::string remaining;                     // "gathering", "in 5 min", "now"
    std::string name;                          // as shown; a phase of a cycle without a name has a dash
    std::string eventName;                     // as the catalogue has it, by which it is watched
    std::string place;                         // section, category and note
    std::string getThereBy;                    // empty when players need not gather early
    std::string chatlink;                      // empty when there is none
    std::string wikiPage;                      // empty when there is none
    std::optional<std::array<int, 3>> accent;  // red, green, blue, 0 to 255
    std::vector<RewardBadge> badges;
    bool watched = false;
    bool opens = false;  // has achievements or items to show

    bool operator==(const OccurrenceRow&) const = default;
};

// A time that cannot be written stops the program with status 70.
[[nodiscard]] OccurrenceRow occurrenceRow(const TimelineEvent& occurrence, RowPhase phase, int now, bool watched);

// The row in one sentence.
[[nodiscard]] std::string spokenText(const OccurrenceRow& row);

}  // namespace vantor
