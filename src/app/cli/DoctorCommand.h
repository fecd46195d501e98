#pragma once
// What `vantor --doctor` prints. Pure.

#include <string>
#include <vector>

#include "platform/Power.h"

namespace vantor {

// One line for each, with a line feed at its end.
[[nodiscard]] std::string powersAsText(const std::vector<Power>& powers);

}  // namespace vantor
