#pragma once
// What the keys of a layout do to the keyboard's state by being held. Computed once, then a plain value.

#include <array>
#include <bitset>
#include <cstdint>

#include "platform/linux/XkbHandles.h"

namespace vantor {

struct KeyEffects {
    // The real modifiers that a key gives in the group, with nothing else held.
    std::array<std::uint8_t, 256> modifiers{};
    // The keys that hold, latch or lock a modifier or a group, in any group, with Shift or without.
    std::bitset<256> choosers;
    std::uint8_t groups = 1;
};

// Nothing at all for a null keymap.
[[nodiscard]] KeyEffects keyEffects(const XkbKeymap& keymap, xkb_layout_index_t group);

}  // namespace vantor
