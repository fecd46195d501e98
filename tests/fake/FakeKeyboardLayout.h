#pragma once
// A layout written down in a test. One thread.

#include <map>
#include <utility>

#include "platform/KeyboardLayout.h"

namespace vantor {

class FakeKeyboardLayout final : public KeyboardLayout {
public:
    // Without the non-coalesced bit.
    using Keys = std::map<std::pair<KeyCode, ModifierFlags>, std::string>;
    Keys keys;
    std::vector<Keys> otherKeys;
    ModifierFlags slow = 0;
    bool isAnother = false;  // until it is read anew

    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override {
        const auto found = keys.find({keyCode, flags & ~modifier::nonCoalesced});
        if (found == keys.end()) return std::nullopt;
        return Translation{found->second, flags};
    }
    [[nodiscard]] std::vector<std::unique_ptr<KeyboardLayout>> others() const override {
        std::vector<std::unique_ptr<KeyboardLayout>> layouts;
        for (const Keys& each : otherKeys) {
            auto layout = std::make_unique<FakeKeyboardLayout>();
            layout->keys = each;
            layouts.push_back(std::move(layout));
        }
        return layouts;
    }
    [[nodiscard]] ModifierFlags slowModifiers() const override { return slow; }
    [[nodiscard]] bool refresh() override { return std::exchange(isAnother, false); }
};

}  // namespace vantor
