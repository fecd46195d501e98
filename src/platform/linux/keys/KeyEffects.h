#pragma once
// What the keys of a layout do to the keyboard's state by being held. Knows no server. One thread.

#include <bitset>
#include <cstdint>
#include <vector>

#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

class KeyEffects {
public:
    struct State {
        std::uint8_t modifiers = 0;  // of the eight real ones
        std::uint8_t group = 0;

        bool operator==(const State&) const = default;
    };

    // A null keymap has no effects at all.
    explicit KeyEffects(const XkbKeymap& keymap);
    [[nodiscard]] bool areOf(const XkbKeymap& keymap) const { return keymap_.get() == keymap.get(); }

    // The keys that hold, latch or lock a modifier or a group, in any group, with Shift or without.
    [[nodiscard]] const std::bitset<256>& modifierKeys() const { return modifierKeys_; }
    [[nodiscard]] std::uint8_t groups() const { return groups_; }
    // While these are down, pressed in this order, in the group with nothing else locked: beside another modifier a key
    // may be another one.
    [[nodiscard]] State holding(const std::vector<std::uint8_t>& keys, std::uint8_t group) const;

    // Whether this key, pressed beside others that go up before it, does something else than alone: on some layouts a
    // modifier is then a latch, which outlasts them all.
    [[nodiscard]] bool differsBeside(const std::vector<std::uint8_t>& others, std::uint8_t key,
                                     std::uint8_t group) const;

private:
    void findModifierKeys();

    XkbKeymap keymap_;
    std::bitset<256> modifierKeys_;
    std::uint8_t groups_ = 1;
};

}  // namespace vantor
