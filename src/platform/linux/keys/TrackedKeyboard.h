#pragma once
// The state of a keyboard as its stream of keys makes it, and the key event that a key is in that state. Knows no
// server. One thread.

#include <bitset>
#include <cstdint>
#include <optional>

#include "platform/Keys.h"
#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

class TrackedKeyboard {
public:
    using HeldKeys = std::bitset<256>;
    // As the server reports it: masks of the eight real modifiers, and the group.
    struct ServerState {
        xkb_mod_mask_t held = 0;
        xkb_mod_mask_t latched = 0;
        xkb_mod_mask_t locked = 0;
        xkb_layout_index_t group = 0;
    };

    TrackedKeyboard() = default;  // no layout: keys have neither flags nor characters
    TrackedKeyboard(XkbKeymap keymap, const HeldKeys& held, const ServerState& server);

    void update(std::uint8_t xKeycode, bool down);
    // Takes over what is latched and locked. What is held stays as the stream tells it, unless the stream holds no key:
    // then the server knows better.
    void resynchronise(const ServerState& server);

    [[nodiscard]] const HeldKeys& held() const { return held_; }
    [[nodiscard]] ModifierFlags flags() const;
    // After update() with the same key. Nothing for a key without a virtual key code.
    [[nodiscard]] std::optional<KeyEvent> eventFor(std::uint8_t xKeycode, bool down) const;

private:
    [[nodiscard]] bool actsAsModifier(std::uint8_t xKeycode) const;

    XkbKeymap keymap_;
    XkbState state_;
    HeldKeys held_;
};

}  // namespace vantor
