#include "timers/EmptyList.h"

#include <cstdio>

namespace vantor {

EmptyReason emptyReason(DataState state) {
    switch (state) {
        case DataState::noKey:
            return EmptyReason::noKey;
        case DataState::keyIsNew:
            return EmptyReason::keyIsNew;
        case DataState::keyRefused:
            return EmptyReason::keyRefused;
        case DataState::keyLacksScope:
            return EmptyReason::keyLacksScope;
        case DataState::failed:
            return EmptyReason::failed;
        case DataState::loading:
        case DataState::ready:
            break;
    }
    return EmptyReason::loading;
}

EmptyWords emptyWords(EmptyReason reason, const std::string& subject, double windowMinutes) {
    switch (reason) {
        case EmptyReason::noKey:
            return {"No API key yet",
                    "The " + subject + " show your own progress, which the game gives out for a key.",
                    EmptyRemedy::openKeyField,
                    "Enter the key",
                    EmptyRemedy::showWithoutProgress,
                    "Show the " + (subject == "timers" ? "times" : subject) + " without progress"};
        case EmptyReason::keyIsNew:
            return {"The API key is set", "The " + subject + " are loaded when Vantor starts the next time.",
                    EmptyRemedy::tryAgain, "Load now"};
        case EmptyReason::keyRefused:
            return {"The game refused the API key", "It may have been deleted, or a character of it is missing.",
                    EmptyRemedy::openKeyField, "Check the key"};
        case EmptyReason::keyLacksScope:
            return {"The API key does not show your progress",
                    "Make a key with the permissions account and progression.", EmptyRemedy::openKeyField,
                    "Change the key"};
        case EmptyReason::loading:
            return {"Loading", "The " + subject + " are on their way.", EmptyRemedy::none, {}};
        case EmptyReason::failed:
            return {"The " + subject + " could not be loaded", "The network or the game's service did not answer.",
                    EmptyRemedy::tryAgain, "Try again"};
        case EmptyReason::filtersExcludeAll:
            return {"Every event is filtered out", "Turn on at least one kind of event, then reload.",
                    EmptyRemedy::openFilters, "Open the filters"};
        case EmptyReason::nothingFound:
            return {"Nothing found", "No event, section or category has all of these words.", EmptyRemedy::clearSearch,
                    "Clear the search"};
        case EmptyReason::nothingAhead:
            break;
    }
    return {"Nothing ahead", "No event is left in the next " + windowText(windowMinutes) + " of this day.",
            EmptyRemedy::openFilters, "Look further ahead"};
}

std::string windowText(double minutes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g h", minutes / 60);
    return text;
}

}  // namespace vantor
