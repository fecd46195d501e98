#pragma once
// Whether the player wants less motion, as the system's accessibility settings say. Main thread.

#include <functional>

#include "base/Subscription.h"

namespace vantor {

// Tells at once, and again whenever a display setting of accessibility has changed, until the subscription ends.
[[nodiscard]] Subscription observeReducedMotion(std::function<void(bool reduced)> handler);

}  // namespace vantor
