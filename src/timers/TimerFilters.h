#pragma once
// The seven settings that choose which events enter the timeline. A plain value; read it once per computation.

#include "platform/Defaults.h"

namespace vantor {

struct TimerFilters {
    bool isTimer = false;
    bool isEvent = true;
    bool hasGuaranteedItems = false;
    bool dropsItems = false;
    bool hasAchievements = false;
    bool dropsCollectionsItems = false;
    bool isSpecialEvent = false;

    bool operator==(const TimerFilters&) const = default;
};

// A key that is unset, or that holds anything but a boolean, takes its default.
[[nodiscard]] TimerFilters readTimerFilters(const Defaults& defaults);

}  // namespace vantor
