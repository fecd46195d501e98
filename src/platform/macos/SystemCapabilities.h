#pragma once
// What Vantor needs from the system, whether it is there, and what to do when it is not: here that is what the player
// has to allow. Main thread.

#include <vector>

#include "platform/Capability.h"
#include "platform/macos/PrivacyPermissions.h"

namespace vantor {

// In the order in which they are shown.
[[nodiscard]] std::vector<Capability> examineCapabilities(const PrivacyPermissions& permissions);

}  // namespace vantor
