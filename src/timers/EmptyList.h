#pragma once
// Why a list of the timers or the bestiary is empty, in words, with the one action that helps. Values; any thread.

#include <string>

#include "timers/DataState.h"

namespace vantor {

enum class EmptyReason {
    noKey,
    keyIsNew,
    keyRefused,
    keyLacksScope,
    loading,
    failed,
    filtersExcludeAll,  // the timeline has nothing at all
    nothingFound,       // by the search
    nothingAhead,       // in this window of the day
};

enum class EmptyRemedy { none, openKeyField, showWithoutProgress, openFilters, clearSearch, tryAgain };

struct EmptyWords {
    std::string title;
    std::string sentence;
    EmptyRemedy remedy = EmptyRemedy::none;
    std::string action;  // empty without a remedy
    // What helps otherwise, where there is a choice.
    EmptyRemedy otherRemedy = EmptyRemedy::none;
    std::string otherAction{};

    bool operator==(const EmptyWords&) const = default;
};

// Of a state other than `ready`.
[[nodiscard]] EmptyReason emptyReason(DataState state);

// subject: "timers", "bestiary". windowMinutes: the length of the shown window, for `nothingAhead`.
[[nodiscard]] EmptyWords emptyWords(EmptyReason reason, const std::string& subject, double windowMinutes = 0);

// "3 h", "1.5 h".
[[nodiscard]] std::string windowText(double minutes);

}  // namespace vantor
