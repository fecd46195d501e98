#pragma once
// The keyboard layout in force, asked by having the system convert an event for a key. Main thread.

#include "platform/KeyboardLayout.h"
#include "platform/macos/KeyboardEvents.h"

namespace vantor {

class EventKeyboardLayout final : public KeyboardLayout {
public:
    // The events that it asks about are the ones that are posted later.
    explicit EventKeyboardLayout(KeyboardEvents& events) : events_(events) {}

    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override;

private:
    KeyboardEvents& events_;
};

}  // namespace vantor
