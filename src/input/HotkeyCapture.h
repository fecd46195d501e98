#pragma once
// The capture of one hotkey: every key that goes down in its window becomes the new text, if it has a name, and does
// nothing else. Stored only when it is accepted. Main thread; ends with the object.

#include <functional>
#include <string>
#include <string_view>

#include "platform/Defaults.h"
#include "platform/KeyMonitors.h"

namespace vantor {

// What a hotkey setting holds while it is not set; no key event reads so.
inline constexpr std::string_view unsetHotkey = " ";
// The stored text, or that of a hotkey that is not set.
[[nodiscard]] std::string storedHotkey(const Defaults& defaults, std::string_view key);

class HotkeyCapture {
public:
    // `hasKeyboard`: whether a key that Vantor is given is for the capture's window. `changed`: after each change of
    // the new text.
    HotkeyCapture(Defaults& defaults, std::string_view key, KeyMonitors& monitors, std::function<bool()> hasKeyboard,
                  std::function<void()> changed);
    HotkeyCapture(const HotkeyCapture&) = delete;
    HotkeyCapture& operator=(const HotkeyCapture&) = delete;

    [[nodiscard]] const std::string& newEvent() const { return newEvent_; }
    // What the new text will mean that a player may not expect, one sentence; empty when nothing.
    [[nodiscard]] std::string warning() const;
    void unbind() { set(std::string(unsetHotkey)); }
    // Back to the text that the hotkey had when the capture began.
    void restore() { set(originalReadableKeys_); }
    void accept();

private:
    void set(std::string text);

    Defaults& defaults_;
    std::string key_;
    std::string originalReadableKeys_;
    std::string newEvent_;
    std::function<void()> changed_;
    Subscription monitor_;
};

}  // namespace vantor
