#pragma once
// The kinds of reward that an event has, as the badges of its row. Values; any thread.

#include <string_view>
#include <vector>

#include "data/Catalogue.h"

namespace vantor {

struct RewardBadge {
    std::string_view image;
    std::string_view label;

    bool operator==(const RewardBadge&) const = default;
};

// A list that is present counts, also an empty one.
[[nodiscard]] std::vector<RewardBadge> rewardBadges(const Event& event);

}  // namespace vantor
