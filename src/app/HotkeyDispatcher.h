#pragma once
// What a released key asks for. Pure decision on the event, the state and the settings as they are at this call. Main
// thread.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Defaults.h"
#include "platform/KeyMonitors.h"
#include "platform/Keys.h"

namespace vantor {

enum class HotkeyAction { none, close, paste, toggle };

struct HotkeyDecision {
    HotkeyAction action = HotkeyAction::none;
    // The camera key is replayed with every toggle, and with a close that found the overlay open.
    bool replayCamera = false;
    // The overlay that opens is given the keyboard: the hotkey was held for half a second.
    bool withKeyboard = false;

    bool operator==(const HotkeyDecision&) const = default;
};

// `isApplicationEnabled` is asked at most once, and only for the paste shortcut.
[[nodiscard]] HotkeyDecision decideHotkey(const KeyEvent& event, bool visible,
                                          const std::function<bool()>& isApplicationEnabled, const Defaults& defaults);

// Whether the paste shortcut would paste now, and so is not the game's.
[[nodiscard]] bool isPasteShortcutOn(bool visible, const std::function<bool()>& isApplicationEnabled,
                                     const Defaults& defaults);

// What a desktop is asked to listen for, with the keys that are stored as their wishes.
inline constexpr std::string_view toggleShortcutId = "toggle";
inline constexpr std::string_view secondToggleShortcutId = "toggle-second";
inline constexpr std::string_view pasteShortcutId = "paste";
[[nodiscard]] std::vector<DesktopShortcut> desktopShortcuts(const Defaults& defaults);

// The readable keys of the game's action camera, without white space at its ends; empty when there is none to replay.
[[nodiscard]] std::string actionCameraText(const Defaults& defaults);

}  // namespace vantor
