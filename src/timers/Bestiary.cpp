#include "timers/Bestiary.h"

#include <algorithm>
#include <utility>

namespace vantor {

std::vector<BestiarySection> bestiarySections(const std::vector<BeastCategory>& categories,
                                              const ProgressById& progress, const WordSearch& search,
                                              bool progressKnown) {
    std::vector<BestiarySection> sections;
    const auto found = [&](const BeastCategory& category, const BeastRace& race) {
        std::string texts = race.id + "\n" + category.id + "\n" + race.description + "\n" + race.unlock_txt;
        // Ids are shown with spaces.
        std::ranges::replace(texts, '_', ' ');
        return search.finds(foldedForSearch(texts));
    };
    for (const BeastCategory& category : categories) {
        BestiarySection section;
        section.id = category.id;
        for (const BeastRace& race : category.races) {
            if (!found(category, race)) continue;
            BestiaryFamily family;
            family.id = race.id;
            family.icon = race.icon;
            family.description = race.description;
            family.unlock = race.unlock_txt;
            family.tracked = race.unlock.has_value();
            if (race.unlock) {
                const ProgressLook look = progressLook(progress, *race.unlock, progressKnown);
                family.state = look.state;
                family.progress = look.text;
                family.part = look.part;
                if (look.state != AchievementState::unknown) ++section.tracked;
                if (family.state == AchievementState::done) ++section.done;
            }
            section.families.push_back(std::move(family));
        }
        if (!section.families.empty()) sections.push_back(std::move(section));
    }
    return sections;
}

}  // namespace vantor
