#include "app/HotkeyDispatcher.h"

#include <QtCore/QString>

#include "data/SettingKeys.h"
#include "input/ReadableKeyText.h"
#include "platform/KeyClasses.h"

namespace vantor {

HotkeyDecision decideHotkey(const KeyEvent& event, bool visible, const std::function<bool()>& isApplicationEnabled,
                            const Defaults& defaults) {
    if (event.keyCode == key_code::escape) return {HotkeyAction::close, visible};

    const bool commandV = event.keyCode == key_code::v && (event.flags & modifier::command) != 0;
    if (commandV && isPasteShortcutOn(visible, isApplicationEnabled, defaults)) return {HotkeyAction::paste, false};

    const std::string text = readableKeyText(event);
    const bool toggles = defaults.get<std::string>(settings::windowToggleEvent) == text ||
                         defaults.get<std::string>(settings::windowToggleSecondaryEvent) == text;
    return toggles ? HotkeyDecision{HotkeyAction::toggle, true} : HotkeyDecision{};
}

bool isPasteShortcutOn(bool visible, const std::function<bool()>& isApplicationEnabled, const Defaults& defaults) {
    return !visible && isApplicationEnabled() && defaults.get<bool>(settings::pasteClipboard).value_or(false);
}

std::string actionCameraText(const Defaults& defaults) {
    const auto stored = defaults.get<std::string>(settings::actionCamToggleEvent);
    return stored ? QString::fromStdString(*stored).trimmed().toStdString() : std::string();
}

}  // namespace vantor
