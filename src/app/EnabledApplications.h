#pragma once
// Which applications count as the game: the stored list, and adding and removing the current one. Main thread.

#include <string>

#include "platform/Defaults.h"

namespace vantor {

// A missing or empty list is first written anew with the game, Vantor itself and the streaming client.
[[nodiscard]] bool isApplicationEnabled(Defaults& defaults, const std::string& identifier);

// Adds the application at the end of the list, or removes its first occurrence. An empty identifier is never added.
void toggleApplication(Defaults& defaults, const std::string& identifier);

}  // namespace vantor
