#pragma once
// What a new player does first, as the settings tell it. Values; main thread.

#include <array>
#include <string_view>

#include "platform/Defaults.h"

namespace vantor {

enum class FirstStep { key, hotkey, watchedEvent };

struct FirstSteps {
    bool hasKey = false;
    bool hasHotkey = false;
    bool watchesEvent = false;
    bool goesWithoutKey = false;  // shows the times without progress

    [[nodiscard]] bool isDone(FirstStep step) const;
    // Nothing is left to be shown.
    [[nodiscard]] bool areOver() const { return (hasKey || goesWithoutKey) && hasHotkey && watchesEvent; }
    [[nodiscard]] bool areUntouched() const { return !hasKey && !hasHotkey && !watchesEvent && !goesWithoutKey; }

    bool operator==(const FirstSteps&) const = default;
};

inline constexpr std::array firstSteps{FirstStep::key, FirstStep::hotkey, FirstStep::watchedEvent};

[[nodiscard]] FirstSteps readFirstSteps(const Defaults& defaults);
// Whether a change of this setting can change them.
[[nodiscard]] bool concernsFirstSteps(std::string_view key);

// The floating icon has yet to be explained: nobody has used the program with these settings.
[[nodiscard]] bool isIconUnexplained(const Defaults& defaults);

}  // namespace vantor
