#pragma once
// What Vantor needs from the system, whether it is there, and what to do when it is not: here that is what the player
// has to allow. Main thread.

#include <vector>

#include "platform/Permissions.h"
#include "platform/Power.h"

namespace vantor {

// In the order in which they are shown.
[[nodiscard]] std::vector<Power> examinePowers(const Permissions& permissions);

}  // namespace vantor
