#pragma once
// The readable text of a key event: the stored form of every hotkey. Pure, any thread.

#include <string>

#include "platform/Keys.h"

namespace vantor {

[[nodiscard]] std::string readableKeyText(const KeyEvent& event);

}  // namespace vantor
