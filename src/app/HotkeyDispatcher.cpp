#include "app/HotkeyDispatcher.h"

#include <QtCore/QString>

#include "data/SettingKeys.h"
#include "input/ReadableKeyText.h"
#include "platform/KeyClasses.h"

namespace vantor {

namespace {

constexpr std::chrono::milliseconds longHold{500};

bool isToggle(const KeyEvent& event, const Defaults& defaults) {
    const std::string text = readableKeyText(event);
    // A key without a name; so was stored what could not be captured.
    if (text.empty()) return false;
    return defaults.get<std::string>(settings::windowToggleEvent) == text ||
           defaults.get<std::string>(settings::windowToggleSecondaryEvent) == text;
}

}  // namespace

HotkeyDecision decideHotkey(const KeyEvent& event, bool visible, const std::function<bool()>& isApplicationEnabled,
                            const Defaults& defaults) {
    if (event.keyCode == key_code::escape) return {HotkeyAction::close, visible};

    const bool commandV = event.keyCode == key_code::v && (event.flags & modifier::command) != 0;
    if (commandV && isPasteShortcutOn(visible, isApplicationEnabled, defaults)) return {HotkeyAction::paste, false};

    KeyEvent withoutLock = event;
    withoutLock.flags &= ~modifier::capsLock;
    if (!isToggle(event, defaults) && !isToggle(withoutLock, defaults)) return {};
    return {HotkeyAction::toggle, true, !visible && event.heldFor >= longHold};
}

bool isPasteShortcutOn(bool visible, const std::function<bool()>& isApplicationEnabled, const Defaults& defaults) {
    return !visible && isApplicationEnabled() && defaults.get<bool>(settings::pasteClipboard).value_or(false);
}

std::string actionCameraText(const Defaults& defaults) {
    const auto stored = defaults.get<std::string>(settings::actionCamToggleEvent);
    return stored ? QString::fromStdString(*stored).trimmed().toStdString() : std::string();
}

}  // namespace vantor
