#include "timers/RewardBadge.h"

namespace vantor {

std::vector<RewardBadge> rewardBadges(const Event& event) {
    std::vector<RewardBadge> badges;
    if (!event.rewards) return badges;
    const EventRewards& rewards = *event.rewards;
    if (rewards.items) badges.push_back({"reward", "Guaranteed rewards"});
    if (rewards.random_items) badges.push_back({"luck.blue", "Lucky drops"});
    if (rewards.achievements) badges.push_back({"achievement", "Gain achievements"});
    if (rewards.items_for_achievements) badges.push_back({"collection", "Drops active collection items"});
    return badges;
}

}  // namespace vantor
