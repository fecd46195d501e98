#include "input/HotkeyCapture.h"

#include <QtCore/QString>
#include <utility>

#include "data/Graphemes.h"
#include "data/SettingKeys.h"
#include "input/ReadableKeyText.h"

namespace vantor {

namespace {

// What a player also types into the chat.
bool isPlainCharacter(QString text) {
    if (const QString keypad = QStringLiteral("numpad "); text.startsWith(keypad)) text.remove(0, keypad.size());
    return graphemeCount(text) == 1 && (text.at(0).isLetterOrNumber() || text.at(0).isPunct());
}

bool canBePressed(const std::string& text) {
    return text.find("\u2318") == std::string::npos && text.find("numpad ") == std::string::npos;
}

}  // namespace

std::string storedHotkey(const Defaults& defaults, std::string_view key) {
    const std::string stored = defaults.get<std::string>(key).value_or("");
    // Keys without a name were once captured as an empty text.
    return stored.empty() ? std::string(unsetHotkey) : stored;
}

HotkeyCapture::HotkeyCapture(Defaults& defaults, std::string_view key, KeyMonitors& monitors,
                             std::function<bool()> hasKeyboard, std::function<void()> changed)
    : defaults_(defaults),
      key_(key),
      originalReadableKeys_(storedHotkey(defaults, key)),
      newEvent_(originalReadableKeys_),
      changed_(std::move(changed)),
      monitor_(monitors.addLocalMonitor(maskOf(KeyEventType::keyDown),
                                        [this, hasKeyboard = std::move(hasKeyboard)](const KeyEvent& event) {
                                            if (!hasKeyboard()) return KeyMonitors::Passing::passOn;
                                            KeyEvent alone = event;
                                            alone.flags = 0;
                                            if (!readableKeyText(alone).empty()) set(readableKeyText(event));
                                            return KeyMonitors::Passing::swallow;
                                        })) {}

std::string HotkeyCapture::warning() const {
    if (newEvent_ == unsetHotkey) return {};
    const auto isStoredAs = [this](std::string_view key) {
        return key != key_ && storedHotkey(defaults_, key) == newEvent_;
    };
    const bool isCamera = key_ == settings::actionCamToggleEvent;
    if (isCamera && !canBePressed(newEvent_)) return "Vantor cannot press this in the game: the camera stays as it is.";
    if (isCamera ? isStoredAs(settings::windowToggleEvent) || isStoredAs(settings::windowToggleSecondaryEvent)
                 : isStoredAs(settings::actionCamToggleEvent))
        return "The camera key and the window key are the same: the game gets it twice, and the camera stays as it is.";
    if (!isCamera && isPlainCharacter(QString::fromStdString(newEvent_)))
        return "Typed in the game's chat, it opens and closes Vantor as well.";
    return {};
}

// A hotkey that cannot be stored stays the old one; the store itself says why.
void HotkeyCapture::accept() { (void)defaults_.setValue(key_, newEvent_); }

void HotkeyCapture::set(std::string text) {
    newEvent_ = std::move(text);
    changed_();
}

}  // namespace vantor
