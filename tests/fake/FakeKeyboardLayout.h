#pragma once
// A layout written down in a test. One thread.

#include <map>
#include <utility>

#include "platform/KeyboardLayout.h"

namespace vantor {

class FakeKeyboardLayout final : public KeyboardLayout {
public:
    // Without the non-coalesced bit.
    std::map<std::pair<KeyCode, ModifierFlags>, std::string> keys;

    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override {
        const auto found = keys.find({keyCode, flags & ~modifier::nonCoalesced});
        if (found == keys.end()) return std::nullopt;
        return Translation{found->second, flags};
    }
};

}  // namespace vantor
