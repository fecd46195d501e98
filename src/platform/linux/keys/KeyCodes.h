#pragma once
// Between this system's virtual key codes and the kernel's. One table for both directions. Any thread.

#include <cstdint>
#include <optional>

#include "platform/Keys.h"

namespace vantor {

using EvdevCode = std::uint16_t;

// The X server numbers the kernel's codes from 8 (xkeyboard-config, keycodes/evdev).
inline constexpr std::uint8_t xKeycodeOffset = 8;

// Nothing for a virtual key code that has no key on this system.
[[nodiscard]] std::optional<EvdevCode> evdevCodeOf(KeyCode keyCode);
// Nothing for a key that has no virtual key code.
[[nodiscard]] std::optional<KeyCode> keyCodeOf(EvdevCode code);

[[nodiscard]] std::optional<std::uint8_t> xKeycodeOf(KeyCode keyCode);
[[nodiscard]] std::optional<KeyCode> keyCodeOfX(std::uint32_t xKeycode);

}  // namespace vantor
