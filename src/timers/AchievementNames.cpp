#include "timers/AchievementNames.h"

#include <algorithm>
#include <utility>

namespace vantor {

void AchievementNames::need(std::span<const std::int64_t> ids) {
    for (const std::int64_t id : ids)
        if (!names_.contains(id) && asked_.insert(id).second) queued_.push_back(id);
    if (underWay_.empty()) fetchNext();
}

void AchievementNames::loaded(const std::vector<Achievement>& held, bool waiting) {
    for (const Achievement& achievement : held) names_.try_emplace(achievement.id, achievement.name);
    if (waiting) return;
    underWay_.clear();
    fetchNext();
}

AchievementNames::Known AchievementNames::known(std::int64_t id) const {
    if (names_.contains(id)) return Known::yes;
    if (!asked_.contains(id)) return Known::unasked;
    const bool queued = std::ranges::find(queued_, id) != queued_.end();
    return queued || underWay_.contains(id) ? Known::loading : Known::missed;
}

const std::string& AchievementNames::name(std::int64_t id) const {
    static const std::string none;
    const auto found = names_.find(id);
    return found == names_.end() ? none : found->second;
}

void AchievementNames::fetchNext() {
    // What waited may have come with an earlier answer.
    std::erase_if(queued_, [&](std::int64_t id) { return names_.contains(id); });
    if (queued_.empty()) return;
    auto ids = std::exchange(queued_, {});
    underWay_.insert(ids.begin(), ids.end());
    fetch_(std::move(ids));
}

}  // namespace vantor
