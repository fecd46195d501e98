#pragma once
// The names that stored hotkeys give to keys, for both directions: text of a pressed key, key of a stored text. Plain
// values.

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/KeyClasses.h"
#include "platform/Keys.h"

namespace vantor {

struct KeyName {
    std::string_view name;
    KeyCode keyCode;
};

namespace key_name {
// With the text-presentation selector, so that no emoji is drawn.
inline constexpr std::string_view enter = "\u21A9\uFE0E";
inline constexpr std::string_view shift = "\u21E7";
inline constexpr std::string_view control = "\u2303";
inline constexpr std::string_view option = "\u2325";
}  // namespace key_name

// The first ones are the keys whose name always replaces their characters; the next four are named where no such name
// is found; the modifier keys at the end are played back only. Key codes: HIToolbox Events.h.
inline constexpr std::size_t functionKeyNameCount = 29;
inline constexpr std::size_t textKeyNameCount = functionKeyNameCount + 4;
inline constexpr std::array<KeyName, textKeyNameCount + 3> readableKeyNames = {{
    {"F1", 122},
    {"F2", 120},
    {"F3", 99},
    {"F4", 118},
    {"F5", 96},
    {"F6", 97},
    {"F7", 98},
    {"F8", 100},
    {"F9", 101},
    {"F10", 109},
    {"F11", 103},
    {"F12", 111},
    {"F13", 105},
    {"F14", 107},
    {"F15", 113},
    {"F16", 106},
    {"F17", 64},
    {"F18", 79},
    {"F19", 80},
    {"\u2190", 123},
    {"\u2193", 125},
    {"\u2192", 124},
    {"\u2191", 126},
    {"\u2326", 117},
    {"\u21F2", 119},
    {"\u2357", 121},
    {"\u21F1", 115},
    {"\u2350", 116},
    {"\U0001F147", 71},
    {key_name::enter, 76},
    {"\u2423", 49},
    {"\u232B", 51},
    {"ESC", 53},
    {key_name::shift, 56},
    {key_name::control, 59},
    {key_name::option, 61},
}};

// The name of a function key, an arrow or another key of the first group.
[[nodiscard]] constexpr std::optional<std::string_view> functionKeyName(KeyCode code) {
    for (std::size_t at = 0; at < functionKeyNameCount; ++at)
        if (readableKeyNames[at].keyCode == code) return readableKeyNames[at].name;
    return std::nullopt;
}

// The name of Return, Space, Delete or Escape.
[[nodiscard]] constexpr std::optional<std::string_view> textKeyName(KeyCode code) {
    if (code == key_code::enter) return key_name::enter;
    for (std::size_t at = functionKeyNameCount; at < textKeyNameCount; ++at)
        if (readableKeyNames[at].keyCode == code) return readableKeyNames[at].name;
    return std::nullopt;
}

[[nodiscard]] constexpr std::optional<KeyCode> keyCodeNamed(std::string_view name) {
    for (const KeyName& each : readableKeyNames)
        if (each.name == name) return each.keyCode;
    return std::nullopt;
}

}  // namespace vantor
