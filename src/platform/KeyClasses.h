#pragma once
// What kind of key a virtual key code is, wherever the answer does not depend on the layout. Source: HIToolbox Events.h
// for the codes; which keys carry which flag by themselves is IOKit's NXEvent behaviour. Plain functions, any thread.

#include <algorithm>
#include <array>

#include "platform/Keys.h"

namespace vantor {

// The single keys that the program knows by their place.
namespace key_code {
inline constexpr KeyCode v = 9;
inline constexpr KeyCode enter = 36;
inline constexpr KeyCode tab = 48;
inline constexpr KeyCode escape = 53;
inline constexpr KeyCode shift = 56;
inline constexpr KeyCode control = 59;
inline constexpr KeyCode rightOption = 61;
inline constexpr KeyCode keypadEnter = 76;
}  // namespace key_code

// The keys that type what a main key types as well, told apart by being on the numeric keypad.
[[nodiscard]] constexpr bool isKeypadKey(KeyCode code) {
    constexpr std::array<KeyCode, 18> keypad = {65, 67, 69, 71, 75, 76, 78, 81, 82, 83, 84, 85, 86, 87, 88, 89, 91, 92};
    return std::find(keypad.begin(), keypad.end(), code) != keypad.end();
}

// Command, Shift, Caps Lock, Option, Control, each side, and fn.
[[nodiscard]] constexpr bool isModifierKey(KeyCode code) { return code >= 54 && code <= 63; }

// F1 to F20, the arrows, and the editing block with Help (on other keyboards Insert).
[[nodiscard]] constexpr bool carriesFunctionFlag(KeyCode code) {
    constexpr std::array<KeyCode, 30> keys = {122, 120, 99, 118, 96, 97,  98,  100, 101, 109, 103, 111, 105, 107, 113,
                                              106, 64,  79, 80,  90, 123, 124, 125, 126, 114, 115, 116, 117, 119, 121};
    return std::find(keys.begin(), keys.end(), code) != keys.end();
}

}  // namespace vantor
