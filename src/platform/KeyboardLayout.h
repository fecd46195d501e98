#pragma once
// What the keyboard layout in force makes of a key. Learned from on the main thread, before anything is typed; then the
// typing thread's.

#include <memory>
#include <optional>
#include <string>
#include <vector>

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
    // Those that the keyboard can be switched to beside the one in force. Each lives by itself.
    [[nodiscard]] virtual std::vector<std::unique_ptr<KeyboardLayout>> others() const { return {}; }
    // Modifiers whose changes an application may be slow to see, so that where two keys type the same with as many
    // modifiers the one without these is taken.
    [[nodiscard]] virtual ModifierFlags slowModifiers() const { return 0; }
    // Reads the layout anew where the keyboard has got another; true then, and what was learned holds no more. Never
    // true where only the main thread may ask.
    [[nodiscard]] virtual bool refresh() { return false; }
};

}  // namespace vantor
