#pragma once
// Which keys type a text: for everything that one key press can produce, the cheapest key with its modifiers. Learned
// from the layout in force, and for what that one lacks from the keyboard's other layouts. A plain value, any thread.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/KeyboardLayout.h"
#include "platform/Keys.h"

namespace vantor {

struct MappedKey {
    KeyCode keyCode = 0;
    ModifierFlags flags = 0;
    std::uint8_t layout = 0;  // as in PostedKey

    bool operator==(const MappedKey&) const = default;
};

// The main key first, with the flags that it was probed with; then the modifier keys that go down before it, without
// flags.
using MappedKeys = std::vector<MappedKey>;

class KeyMap {
public:
    [[nodiscard]] static KeyMap learn(const KeyboardLayout& layout);

    // By the exact text, else by a canonically equivalent one. Null when no key press types it.
    [[nodiscard]] const MappedKeys* find(const std::string& text) const;
    // Sorted by the bytes of the text.
    [[nodiscard]] const std::map<std::string, MappedKeys>& entries() const { return entries_; }

private:
    void probe(const KeyboardLayout& layout, std::uint8_t number);
    void offer(const std::string& text, MappedKeys keys, ModifierFlags slow = 0);

    std::map<std::string, MappedKeys> entries_;
    std::map<std::string, std::string> textOfNormal_;
};

// {"text": [[keyCode, flags], ...], ...} in the order of the entries, control characters escaped. A key of another
// layout than the one in force has the layout's number as its third value.
[[nodiscard]] std::string keyMapJson(const KeyMap& map);

}  // namespace vantor
