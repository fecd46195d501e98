#pragma once
// What `vantor --doctor` prints. Pure.

#include <string>
#include <vector>

#include "platform/Capability.h"

namespace vantor {

// One line for each, with a line feed at its end.
[[nodiscard]] std::string capabilitiesAsText(const std::vector<Capability>& capabilities);

}  // namespace vantor
