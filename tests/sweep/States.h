#pragma once
// The states of a keyboard that the player may leave it in while Vantor types. Plain values, any thread.

#include <array>
#include <optional>
#include <string_view>

#include "sweep/PlayersKeyboard.h"

namespace vantor::sweep {

enum class Groups { one, second, switched };  // one group; learned in the second; learned in the first, then switched

struct State {
    std::string_view name;
    Groups groups = Groups::one;
    // A key that is held, by the symbol that it gives.
    std::optional<PlayersKeyboard::Device> holder = std::nullopt;
    xkb_keysym_t held = XKB_KEY_NoSymbol;
    // Whether the key is held before the text begins, or goes down and up in the middle of it.
    bool midway = false;
    // A modifier that is locked.
    const char* locked = nullptr;
};

inline constexpr std::array<State, 15> states = {{
    {.name = "plain"},
    {.name = "shift-own", .holder = PlayersKeyboard::Device::own, .held = XKB_KEY_Shift_L},
    {.name = "control-own", .holder = PlayersKeyboard::Device::own, .held = XKB_KEY_Control_L},
    {.name = "altgr-own", .holder = PlayersKeyboard::Device::own, .held = XKB_KEY_ISO_Level3_Shift},
    {.name = "level5-own", .holder = PlayersKeyboard::Device::own, .held = XKB_KEY_ISO_Level5_Shift},
    {.name = "shift-other", .holder = PlayersKeyboard::Device::other, .held = XKB_KEY_Shift_L},
    {.name = "control-other", .holder = PlayersKeyboard::Device::other, .held = XKB_KEY_Control_L},
    {.name = "altgr-other", .holder = PlayersKeyboard::Device::other, .held = XKB_KEY_ISO_Level3_Shift},
    {.name = "shift-midway", .holder = PlayersKeyboard::Device::other, .held = XKB_KEY_Shift_L, .midway = true},
    {.name = "control-midway", .holder = PlayersKeyboard::Device::other, .held = XKB_KEY_Control_L, .midway = true},
    {.name = "altgr-midway",
     .holder = PlayersKeyboard::Device::other,
     .held = XKB_KEY_ISO_Level3_Shift,
     .midway = true},
    {.name = "caps", .locked = XKB_MOD_NAME_CAPS},
    {.name = "num", .locked = XKB_MOD_NAME_NUM},
    {.name = "group2", .groups = Groups::second},
    {.name = "switched", .groups = Groups::switched},
}};

}  // namespace vantor::sweep
