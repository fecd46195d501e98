#include "app/HotkeyDispatcher.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <algorithm>
#include <iterator>
#include <utility>

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

// "CTRL+SHIFT+t" of a stored hotkey, in the words of the desktops. Empty for a key that has another name there.
std::string triggerOf(const QString& hotkey) {
    const std::pair<QString, const char*> modifiers[] = {{QStringLiteral("\u2318"), "LOGO"},
                                                         {QStringLiteral("\u2303"), "CTRL"},
                                                         {QStringLiteral("\u2325"), "ALT"},
                                                         {QStringLiteral("\u21E7"), "SHIFT"}};
    std::string trigger;
    QStringList parts = hotkey.split(QStringLiteral(" + "));
    const QString key = parts.takeLast();
    for (const QString& part : parts) {
        const auto* const found = std::ranges::find(modifiers, part, &std::pair<QString, const char*>::first);
        if (found == std::end(modifiers)) return {};
        trigger += std::string(found->second) + "+";
    }
    const bool isCharacter = key.size() == 1 && key.at(0).unicode() < 0x80 && key.at(0).isLetterOrNumber();
    const bool isFunctionKey = key.size() > 1 && key.startsWith(QLatin1Char('F')) && key.at(1).isDigit();
    if (!isCharacter && !isFunctionKey) return {};
    return trigger + (isFunctionKey ? key : key.toLower()).toStdString();
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

std::vector<DesktopShortcut> desktopShortcuts(const Defaults& defaults) {
    const auto wish = [&](std::string_view key) {
        return triggerOf(QString::fromStdString(defaults.get<std::string>(key).value_or("")));
    };
    return {{std::string(toggleShortcutId), "Open and close Vantor", wish(settings::windowToggleEvent)},
            {std::string(secondToggleShortcutId), "Open and close Vantor, second",
             wish(settings::windowToggleSecondaryEvent)},
            {std::string(pasteShortcutId), "Type the clipboard into the game", "LOGO+v"}};
}

std::string actionCameraText(const Defaults& defaults) {
    const auto stored = defaults.get<std::string>(settings::actionCamToggleEvent);
    return stored ? QString::fromStdString(*stored).trimmed().toStdString() : std::string();
}

}  // namespace vantor
