#pragma once
// The player's side of a keyboard test: a window that has the focus and takes down what is typed into it, keys pressed
// as a hand would, locks, groups, and the state that the keyboard is in.

#include <bitset>
#include <cstdint>
#include <string>

#include "platform/linux/XConnection.h"
#include "platform/linux/keys/KeyboardWatch.h"
#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

class Player {
public:
    Player();

    void takeFocus();
    // Posted by another client than Vantor; done when it returns.
    void press(std::uint8_t xKeycode, bool down);
    void tap(std::uint8_t xKeycode);
    void lock(std::uint8_t modifiers);
    void latch(std::uint8_t modifiers);
    void lockGroup(std::uint8_t group);
    // Nothing down, latched or locked, and the first group.
    void letGo();

    [[nodiscard]] KeyboardState state() const;
    [[nodiscard]] std::bitset<256> keysDown() const;
    // What was typed since it was last asked, read with the modifiers and the group of each event.
    [[nodiscard]] std::string typedText();
    // Ends the connection of another client by one of its resources.
    void killClientOf(std::uint32_t resource);
    void settle() const;

private:
    XConnection server_;
    xcb_window_t window_ = xcb_generate_id(server_.get());
};

// One for all tests: a focused window that vanishes makes the window manager choose another, at its own time.
[[nodiscard]] Player& sharedPlayer();

namespace xkey {
inline constexpr std::uint8_t controlLeft = 37;
inline constexpr std::uint8_t a = 38;
inline constexpr std::uint8_t shiftLeft = 50;
inline constexpr std::uint8_t v = 55;
inline constexpr std::uint8_t shiftRight = 62;
inline constexpr std::uint8_t altLeft = 64;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t controlRight = 105;
inline constexpr std::uint8_t altRight = 108;
inline constexpr std::uint8_t superLeft = 133;
}  // namespace xkey

namespace xmod {
inline constexpr std::uint8_t shift = 1;
inline constexpr std::uint8_t caps = 2;
inline constexpr std::uint8_t num = 16;
}  // namespace xmod

}  // namespace vantor
