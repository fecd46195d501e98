#pragma once
// The state of the core keyboard as the server tells it, on a connection of its own: the events of Vantor's other one
// belong to the stream of keys. Asking for what is new costs one system call and no round trip. The typing thread.

#include <cstdint>

#include "platform/linux/XConnection.h"

namespace vantor {

// Masks are of the eight real modifiers.
struct KeyboardState {
    std::uint8_t held = 0;
    std::uint8_t latched = 0;
    std::uint8_t locked = 0;
    std::uint8_t group = 0;        // in effect
    std::uint8_t lockedGroup = 0;  // without what is held and latched

    bool operator==(const KeyboardState&) const = default;
};

// One round trip; false where the server does not answer.
[[nodiscard]] bool readKeyboard(const XConnection& connection, KeyboardState& state);

class KeyboardWatch {
public:
    KeyboardWatch();

    [[nodiscard]] bool available() const { return available_; }
    // The newest that has come. It may be older than what Vantor posted a moment ago.
    [[nodiscard]] const KeyboardState& newest();

private:
    XConnection connection_;
    bool available_ = false;
    KeyboardState state_;
};

}  // namespace vantor
