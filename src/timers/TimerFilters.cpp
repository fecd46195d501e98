#include "timers/TimerFilters.h"

#include "data/SettingKeys.h"

namespace vantor {

TimerFilters readTimerFilters(const Defaults& defaults) {
    TimerFilters filters;
    const auto read = [&](std::string_view key, bool& filter) { filter = defaults.get<bool>(key).value_or(filter); };
    read(settings::timerIsTimer, filters.isTimer);
    read(settings::timerIsEvent, filters.isEvent);
    read(settings::timerHasGuaranteedItems, filters.hasGuaranteedItems);
    read(settings::timerDropsItems, filters.dropsItems);
    read(settings::timerHasAchievements, filters.hasAchievements);
    read(settings::timerDropsCollectionsItems, filters.dropsCollectionsItems);
    read(settings::timerIsSpecialEvent, filters.isSpecialEvent);
    return filters;
}

}  // namespace vantor
