#include "input/HotkeyCapture.h"

#include <utility>

#include "input/ReadableKeyText.h"

namespace vantor {

std::string storedHotkey(const Defaults& defaults, std::string_view key) {
    return defaults.get<std::string>(key).value_or(std::string(unsetHotkey));
}

HotkeyCapture::HotkeyCapture(Defaults& defaults, std::string_view key, KeyMonitors& monitors,
                             std::function<void()> changed)
    : defaults_(defaults),
      key_(key),
      originalReadableKeys_(storedHotkey(defaults, key)),
      newEvent_(originalReadableKeys_),
      changed_(std::move(changed)),
      monitor_(monitors.addLocalMonitor(maskOf(KeyEventType::keyDown), [this](const KeyEvent& event) {
          set(readableKeyText(event));
          return KeyMonitors::Passing::swallow;
      })) {}

// A hotkey that cannot be stored stays the old one; the store itself says why.
void HotkeyCapture::accept() { (void)defaults_.setValue(key_, newEvent_); }

void HotkeyCapture::set(std::string text) {
    newEvent_ = std::move(text);
    changed_();
}

}  // namespace vantor
