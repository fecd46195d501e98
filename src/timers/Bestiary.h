#pragma once
// The bestiary as it is shown: the families of each category with the player's progress, narrowed by a search. Values;
// any thread.

#include <string>
#include <vector>

#include "data/Catalogue.h"
#include "timers/AchievementBlock.h"
#include "timers/WordSearch.h"

namespace vantor {

struct BestiaryFamily {
    std::string id;  // title and search term
    std::string icon;
    std::string description;
    std::string unlock;    // how the family's achievement is earned
    bool tracked = false;  // an achievement tracks it; otherwise the progress says nothing
    AchievementState state = AchievementState::notStarted;
    std::string progress;
    double part = 0;

    bool operator==(const BestiaryFamily&) const = default;
};

struct BestiarySection {
    std::string id;
    std::vector<BestiaryFamily> families;  // in catalogue order
    std::size_t done = 0;
    std::size_t tracked = 0;  // none while the progress is not known

    bool operator==(const BestiarySection&) const = default;
};

// A category without a family that the search finds stays out. What is searched: family, category, description and
// unlock text.
[[nodiscard]] std::vector<BestiarySection> bestiarySections(const std::vector<BeastCategory>& categories,
                                                            const ProgressById& progress, const WordSearch& search,
                                                            bool progressKnown = true);

}  // namespace vantor
