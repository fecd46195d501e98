#pragma once
// Whether what is posted comes to the server's keyboard. XWayland may have been built to ask the desktop first, which
// asks the player, and what is posted meanwhile is lost: so one key that means nothing goes before all others, and has
// to be seen. The typing thread.

#include <cstdint>
#include <functional>

#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

// `tap` presses the key and lets it go; both are on their way when it returns. Waits 300 ms at most.
[[nodiscard]] bool keyArrives(std::uint8_t xKeycode, const std::function<void(std::uint8_t xKeycode)>& tap);

// A key that no layout of this keymap gives a meaning; where every key has one, the last.
[[nodiscard]] std::uint8_t meaninglessKey(const XkbKeymap& keymap);

}  // namespace vantor
