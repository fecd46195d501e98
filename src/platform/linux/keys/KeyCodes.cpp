#include "platform/linux/keys/KeyCodes.h"

#include <linux/input-event-codes.h>

#include <array>

namespace vantor {

namespace {

constexpr EvdevCode noKey = KEY_RESERVED;

// Index: the virtual key code (HIToolbox Events.h). Value: the key at the same place of the keyboard
// (input-event-codes.h). Number Lock stands where that system has keypad Clear, Insert where it has Help.
// clang-format off
constexpr std::array<EvdevCode, keyCodeCount> evdevCodes = {
    /*   0 */ KEY_A, KEY_S, KEY_D, KEY_F, KEY_H, KEY_G, KEY_Z, KEY_X,
    /*   8 */ KEY_C, KEY_V, KEY_102ND, KEY_B, KEY_Q, KEY_W, KEY_E, KEY_R,
    /*  16 */ KEY_Y, KEY_T, KEY_1, KEY_2, KEY_3, KEY_4, KEY_6, KEY_5,
    /*  24 */ KEY_EQUAL, KEY_9, KEY_7, KEY_MINUS, KEY_8, KEY_0, KEY_RIGHTBRACE, KEY_O,
    /*  32 */ KEY_U, KEY_LEFTBRACE, KEY_I, KEY_P, KEY_ENTER, KEY_L, KEY_J, KEY_APOSTROPHE,
    /*  40 */ KEY_K, KEY_SEMICOLON, KEY_BACKSLASH, KEY_COMMA, KEY_SLASH, KEY_N, KEY_M, KEY_DOT,
    /*  48 */ KEY_TAB, KEY_SPACE, KEY_GRAVE, KEY_BACKSPACE, noKey, KEY_ESC, KEY_RIGHTMETA, KEY_LEFTMETA,
    /*  56 */ KEY_LEFTSHIFT, KEY_CAPSLOCK, KEY_LEFTALT, KEY_LEFTCTRL, KEY_RIGHTSHIFT, KEY_RIGHTALT, KEY_RIGHTCTRL, KEY_FN,
    /*  64 */ KEY_F17, KEY_KPDOT, noKey, KEY_KPASTERISK, noKey, KEY_KPPLUS, noKey, KEY_NUMLOCK,
    /*  72 */ KEY_VOLUMEUP, KEY_VOLUMEDOWN, KEY_MUTE, KEY_KPSLASH, KEY_KPENTER, noKey, KEY_KPMINUS, KEY_F18,
    /*  80 */ KEY_F19, KEY_KPEQUAL, KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5,
    /*  88 */ KEY_KP6, KEY_KP7, KEY_F20, KEY_KP8, KEY_KP9, KEY_YEN, KEY_RO, KEY_KPCOMMA,
    /*  96 */ KEY_F5, KEY_F6, KEY_F7, KEY_F3, KEY_F8, KEY_F9, KEY_MUHENKAN, KEY_F11,
    /* 104 */ KEY_HENKAN, KEY_F13, KEY_F16, KEY_F14, noKey, KEY_F10, KEY_COMPOSE, KEY_F12,
    /* 112 */ noKey, KEY_F15, KEY_INSERT, KEY_HOME, KEY_PAGEUP, KEY_DELETE, KEY_F4, KEY_END,
    /* 120 */ KEY_F2, KEY_PAGEDOWN, KEY_F1, KEY_LEFT, KEY_RIGHT, KEY_DOWN, KEY_UP, noKey,
};
// clang-format on

// The highest code in the table is KEY_FN, above what an X keycode can hold.
constexpr std::size_t evdevCodeLimit = 0x200;

constexpr auto keyCodes = [] {
    std::array<std::int16_t, evdevCodeLimit> codes{};
    codes.fill(-1);
    for (std::size_t i = 0; i < evdevCodes.size(); ++i)
        if (evdevCodes[i] != noKey) codes[evdevCodes[i]] = static_cast<std::int16_t>(i);
    return codes;
}();

}  // namespace

std::optional<EvdevCode> evdevCodeOf(KeyCode keyCode) {
    if (keyCode >= keyCodeCount || evdevCodes[keyCode] == noKey) return std::nullopt;
    return evdevCodes[keyCode];
}

std::optional<KeyCode> keyCodeOf(EvdevCode code) {
    if (code >= evdevCodeLimit || keyCodes[code] < 0) return std::nullopt;
    return static_cast<KeyCode>(keyCodes[code]);
}

std::optional<std::uint8_t> xKeycodeOf(KeyCode keyCode) {
    const auto code = evdevCodeOf(keyCode);
    if (!code || *code > 255 - xKeycodeOffset) return std::nullopt;
    return static_cast<std::uint8_t>(*code + xKeycodeOffset);
}

std::optional<KeyCode> keyCodeOfX(std::uint32_t xKeycode) {
    if (xKeycode < xKeycodeOffset || xKeycode > 255) return std::nullopt;
    return keyCodeOf(static_cast<EvdevCode>(xKeycode - xKeycodeOffset));
}

}  // namespace vantor
