#include "app/FirstSteps.h"

#include <algorithm>

#include "data/SettingKeys.h"
#include "input/HotkeyCapture.h"
#include "timers/WatchedEvents.h"

namespace vantor {

namespace {

constexpr std::array concerned = {settings::apiKey, settings::windowToggleEvent, settings::windowToggleSecondaryEvent,
                                  settings::watching, settings::timerWithoutProgress};

bool isHotkey(const Defaults& defaults, std::string_view key) { return storedHotkey(defaults, key) != unsetHotkey; }

}  // namespace

bool FirstSteps::isDone(FirstStep step) const {
    switch (step) {
        case FirstStep::key:
            return hasKey;
        case FirstStep::hotkey:
            return hasHotkey;
        case FirstStep::watchedEvent:
            break;
    }
    return watchesEvent;
}

FirstSteps readFirstSteps(const Defaults& defaults) {
    return {.hasKey = !defaults.get<std::string>(settings::apiKey).value_or("").empty(),
            .hasHotkey = isHotkey(defaults, settings::windowToggleEvent) ||
                         isHotkey(defaults, settings::windowToggleSecondaryEvent),
            .watchesEvent = !readWatchedNames(defaults).empty(),
            .goesWithoutKey = defaults.get<bool>(settings::timerWithoutProgress).value_or(false)};
}

bool concernsFirstSteps(std::string_view key) { return std::ranges::find(concerned, key) != concerned.end(); }

bool isIconUnexplained(const Defaults& defaults) {
    return readFirstSteps(defaults).areUntouched() && !defaults.get<bool>(settings::explainedIcon).value_or(false);
}

}  // namespace vantor
