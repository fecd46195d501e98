#pragma once
// What the keyboard layout in force makes of a key. Main thread.

#include <optional>
#include <string>

#include "platform/Keys.h"

namespace vantor {

class KeyboardLayout {
public:
    struct Translation {
        std::string characters;   // UTF-8, never empty
        ModifierFlags flags = 0;  // the flags that the converted key-down event carries
    };

    virtual ~KeyboardLayout() = default;

    // Nothing when the key does not exist, is no key-down, or gives no characters (dead keys among them).
    [[nodiscard]] virtual std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const = 0;
};

}  // namespace vantor
