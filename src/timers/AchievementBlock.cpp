#include "timers/AchievementBlock.h"

#include <algorithm>
#include <unordered_set>

namespace vantor {

namespace {

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return countText(static_cast<std::int64_t>(count)) + " " + (count == 1 ? one : many);
}

std::string titleOf(std::int64_t id, const AchievementNames& names) {
    switch (names.known(id)) {
        case AchievementNames::Known::yes:
            return names.name(id);
        case AchievementNames::Known::missed:
            return "Achievement " + std::to_string(id);
        case AchievementNames::Known::unasked:
        case AchievementNames::Known::loading:
            break;
    }
    return "Loading the name\u2026";
}

std::string collectsText(const Event& event, std::int64_t achievement) {
    if (!event.rewards || !event.rewards->items_for_achievements) return {};
    const auto items = std::ranges::count(*event.rewards->items_for_achievements, achievement, &ItemForAchievement::a);
    if (items == 0) return {};
    return "collection: " + counted(static_cast<std::size_t>(items), "item drops here", "items drop here");
}

}  // namespace

ProgressById progressById(const std::vector<AchievementCompletition>& progress) {
    ProgressById found;
    found.reserve(progress.size());
    for (const AchievementCompletition& record : progress) found.try_emplace(record.id, record);
    return found;
}

std::string countText(std::int64_t count) {
    std::string digits = std::to_string(count);
    const std::ptrdiff_t first = count < 0 ? 1 : 0;
    for (auto place = std::ssize(digits) - 3; place > first; place -= 3)
        digits.insert(static_cast<std::size_t>(place), 1, ',');
    return digits;
}

AchievementState achievementState(const AchievementCompletition* progress) {
    if (!progress) return AchievementState::notStarted;
    if (progress->done) return AchievementState::done;
    const bool begun =
        progress->current > 0 || progress->repeated.value_or(0) > 0 || (progress->bits && !progress->bits->empty());
    return begun ? AchievementState::started : AchievementState::notStarted;
}

std::string progressText(const AchievementCompletition* progress) {
    std::string text;
    if (!progress) return "not started";
    if (progress->done) {
        text = "done";
    } else if (progress->unlocked && !*progress->unlocked) {
        text = "locked";
    } else if (achievementState(progress) == AchievementState::notStarted) {
        text = "not started";
    } else if (progress->current > 0 || !progress->bits) {
        text = countText(progress->current) + " of " + countText(progress->max);
    } else {
        text = counted(progress->bits->size(), "part", "parts") + " of " + countText(progress->max);
    }
    if (const auto times = progress->repeated.value_or(0); times > 0)
        text += times == 1 ? ", repeated once" : ", repeated " + countText(times) + " times";
    return text;
}

ProgressLook progressLook(const ProgressById& progress, std::int64_t id, bool progressKnown) {
    const auto found = progress.find(id);
    if (found == progress.end() && !progressKnown) return {AchievementState::unknown, "needs your key", 0};
    const AchievementCompletition* const record = found == progress.end() ? nullptr : &found->second;
    return {achievementState(record), progressText(record), progressPart(record)};
}

double progressPart(const AchievementCompletition* progress) {
    if (!progress) return 0;
    if (progress->done) return 1;
    if (progress->max <= 0) return 0;
    auto count = static_cast<double>(progress->current);
    if (count <= 0 && progress->bits) count = static_cast<double>(progress->bits->size());
    return std::clamp(count / static_cast<double>(progress->max), 0.0, 1.0);
}

std::vector<std::int64_t> achievementIds(const Event& event) {
    std::vector<std::int64_t> ids;
    if (!event.rewards) return ids;
    std::unordered_set<std::int64_t> seen;
    const auto add = [&](std::int64_t id) {
        if (seen.insert(id).second) ids.push_back(id);
    };
    if (event.rewards->achievements) std::ranges::for_each(*event.rewards->achievements, add);
    if (event.rewards->items_for_achievements)
        for (const ItemForAchievement& item : *event.rewards->items_for_achievements) add(item.a);
    return ids;
}

bool hasBlock(const Event& event) {
    if (!event.rewards) return false;
    const auto filled = [](const auto& list) { return list && !list->empty(); };
    const EventRewards& rewards = *event.rewards;
    return filled(rewards.achievements) || filled(rewards.items_for_achievements) || filled(rewards.items) ||
           filled(rewards.random_items);
}

AchievementBlock achievementBlock(const Event& event, const ProgressById& progress, const AchievementNames& names,
                                  bool progressKnown) {
    AchievementBlock block;
    for (const std::int64_t id : achievementIds(event)) {
        const ProgressLook look = progressLook(progress, id, progressKnown);
        block.achievements.push_back({id, titleOf(id, names), names.known(id) == AchievementNames::Known::yes,
                                      look.state, look.text, look.part, collectsText(event, id)});
    }
    const auto missed = std::ranges::count_if(block.achievements, [&](const AchievementLine& line) {
        return names.known(line.id) == AchievementNames::Known::missed;
    });
    if (missed > 0)
        block.note = counted(static_cast<std::size_t>(missed), "name could not be loaded", "names could not be loaded");
    std::stable_partition(block.achievements.begin(), block.achievements.end(),
                          [](const AchievementLine& line) { return line.state != AchievementState::done; });
    if (!event.rewards) return block;
    const EventRewards& rewards = *event.rewards;
    if (rewards.items && !rewards.items->empty())
        block.items.push_back(counted(rewards.items->size(), "guaranteed item", "guaranteed items"));
    if (rewards.random_items && !rewards.random_items->empty())
        block.items.push_back(counted(rewards.random_items->size(), "lucky drop", "lucky drops"));
    if (rewards.items_for_achievements && !rewards.items_for_achievements->empty())
        block.items.push_back(counted(rewards.items_for_achievements->size(), "collection item", "collection items"));
    return block;
}

}  // namespace vantor
