#pragma once
// The keyboard layout through xkbcommon: what posting a key together with the Shift, Control and right Alt keys would
// give, in the group in force when it was made, the keypad as with Num Lock. Main thread.

#include <string>
#include <utility>

#include "platform/KeyboardLayout.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

class XkbKeyboardLayout final : public KeyboardLayout {
public:
    // The server's core keyboard. Without a display or XKB it translates nothing.
    explicit XkbKeyboardLayout(const XConnection& connection);
    // A layout of the machine's list, such as "de" with the variant "nodeadkeys".
    XkbKeyboardLayout(const std::string& layout, const std::string& variant, xkb_layout_index_t group = 0);
    XkbKeyboardLayout(XkbKeymap keymap, xkb_layout_index_t group) : keymap_(std::move(keymap)), group_(group) {}

    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override;
    [[nodiscard]] bool available() const { return keymap_ != nullptr; }
    [[nodiscard]] const XkbKeymap& keymap() const { return keymap_; }
    [[nodiscard]] xkb_layout_index_t group() const { return group_; }

private:
    XkbKeymap keymap_;
    xkb_layout_index_t group_ = 0;
};

}  // namespace vantor
