#pragma once
// What an open row of the timers shows: the achievements that the event advances, with the player's progress, and how
// many items of each kind it gives. Values; any thread.

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "data/Catalogue.h"
#include "data/WebApi.h"
#include "timers/AchievementNames.h"

namespace vantor {

using ProgressById = std::unordered_map<std::int64_t, AchievementCompletition>;
[[nodiscard]] ProgressById progressById(const std::vector<AchievementCompletition>& progress);

enum class AchievementState { unknown, notStarted, started, done };

struct AchievementLine {
    std::int64_t id = 0;
    std::string title;        // the name, or what stands for it
    bool titleKnown = false;  // otherwise it is loading or missed
    AchievementState state = AchievementState::notStarted;
    std::string progress;  // "40 of 100", "done", "not started", "2 parts of 7", "done, repeated 3 times"
    double part = 0;       // of the way, 0 to 1
    std::string collects;  // "1 collection item of this event" where items of the event count toward it

    bool operator==(const AchievementLine&) const = default;
};

struct AchievementBlock {
    std::vector<AchievementLine> achievements;  // open ones first, each part in catalogue order
    std::vector<std::string> items;             // "2 guaranteed items", ...
    std::string note;                           // that names could not be loaded; empty otherwise

    [[nodiscard]] bool isEmpty() const { return achievements.empty() && items.empty(); }
    bool operator==(const AchievementBlock&) const = default;
};

// Whether an event's row has anything to open.
[[nodiscard]] bool hasBlock(const Event& event);
// The achievements that it advances itself and those that its items count toward, each once.
[[nodiscard]] std::vector<std::int64_t> achievementIds(const Event& event);
// progressKnown: no record means that the player has not begun.
[[nodiscard]] AchievementBlock achievementBlock(const Event& event, const ProgressById& progress,
                                                const AchievementNames& names, bool progressKnown = true);

// How far the player is, for the bestiary as well.
struct ProgressLook {
    AchievementState state = AchievementState::unknown;
    std::string text;  // "needs your key" where nobody knows
    double part = 0;
};
[[nodiscard]] ProgressLook progressLook(const ProgressById& progress, std::int64_t id, bool progressKnown);
// No record: not started.
[[nodiscard]] AchievementState achievementState(const AchievementCompletition* progress);
[[nodiscard]] std::string progressText(const AchievementCompletition* progress);
[[nodiscard]] double progressPart(const AchievementCompletition* progress);
// "1,250": players read large counts.
[[nodiscard]] std::string countText(std::int64_t count);

}  // namespace vantor
