#pragma once
// What happens to the four windows for a frontmost application and the player's wish. Pure; any thread.

#include <vector>

#include "platform/AppWindows.h"

namespace vantor {

struct WindowStep {
    enum class Kind {
        orderFront,
        orderOut,
        handFocusBack,  // concerns no window
    };
    Kind kind = Kind::orderOut;
    AppWindowName window = AppWindowName::main;

    bool operator==(const WindowStep&) const = default;
};

// In the order of the calls. `enabled`: the overlay may stand over the frontmost application; `visible`: the player
// wants the main window.
[[nodiscard]] std::vector<WindowStep> windowPlan(bool enabled, bool visible);

}  // namespace vantor
