#include "app/FirstSteps.h"

#include <QString>
#include <algorithm>

#include "data/SettingKeys.h"
#include "timers/WatchedEvents.h"

namespace vantor {

namespace {

constexpr std::array concerned = {settings::apiKey, settings::windowToggleEvent, settings::windowToggleSecondaryEvent,
                                  settings::watching, settings::timerWithoutProgress};

bool isSet(const Defaults& defaults, std::string_view key) {
    // A hotkey that is not set is kept as white space.
    return !QString::fromStdString(defaults.get<std::string>(key).value_or("")).trimmed().isEmpty();
}

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
    return {.hasKey = isSet(defaults, settings::apiKey),
            .hasHotkey =
                isSet(defaults, settings::windowToggleEvent) || isSet(defaults, settings::windowToggleSecondaryEvent),
            .watchesEvent = !readWatchedNames(defaults).empty(),
            .goesWithoutKey = defaults.get<bool>(settings::timerWithoutProgress).value_or(false)};
}

bool concernsFirstSteps(std::string_view key) { return std::ranges::find(concerned, key) != concerned.end(); }

bool isIconUnexplained(const Defaults& defaults) {
    return readFirstSteps(defaults).areUntouched() && !defaults.get<bool>(settings::explainedIcon).value_or(false);
}

}  // namespace vantor
