#pragma once
// The one vocabulary for keys on every platform: virtual key codes 0 to 127 and modifier flags, with the values of the
// system that Vantor was made for (HIToolbox Events.h for the codes, CGEventTypes.h for the flags). Plain values, any
// thread.

#include <chrono>
#include <cstdint>
#include <string>

namespace vantor {

using KeyCode = std::uint16_t;
using ModifierFlags = std::uint32_t;

inline constexpr KeyCode keyCodeCount = 128;

namespace modifier {
inline constexpr ModifierFlags nonCoalesced = 0x100;
inline constexpr ModifierFlags capsLock = 0x10000;
inline constexpr ModifierFlags shift = 0x20000;
inline constexpr ModifierFlags control = 0x40000;
inline constexpr ModifierFlags option = 0x80000;
inline constexpr ModifierFlags command = 0x100000;
inline constexpr ModifierFlags numericPad = 0x200000;
inline constexpr ModifierFlags function = 0x800000;
}  // namespace modifier

// Values are event types and, shifted, the bits of a monitor's mask.
enum class KeyEventType : std::uint8_t { keyDown = 10, keyUp = 11, flagsChanged = 12 };

struct KeyEvent {
    KeyEventType type = KeyEventType::keyDown;
    KeyCode keyCode = 0;
    ModifierFlags flags = 0;
    // What the key gives with no modifier applied, UTF-8; empty when it gives nothing.
    std::string charactersWithoutModifiers;
    // At the release of a key: how long it was down. Zero where the system does not tell.
    std::chrono::milliseconds heldFor{0};

    // The same key, however long it was held.
    bool operator==(const KeyEvent& other) const {
        return type == other.type && keyCode == other.keyCode && flags == other.flags &&
               charactersWithoutModifiers == other.charactersWithoutModifiers;
    }
};

// One synthetic event: a key going down or up, with the flags that the event itself carries where a platform has such.
struct PostedKey {
    KeyCode keyCode = 0;
    ModifierFlags flags = 0;
    bool down = true;
    // Which of the keyboard's layouts the key is meant in: 0 is the one that was learned as in force, the others are
    // KeyboardLayout::others() from 1 on.
    std::uint8_t layout = 0;

    bool operator==(const PostedKey&) const = default;
};

}  // namespace vantor
