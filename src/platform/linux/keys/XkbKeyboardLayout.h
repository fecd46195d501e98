#pragma once
// The keyboard layout through xkbcommon: what posting a key together with the Shift, Control and right Alt keys would
// give, in the group in force when it was read, the keypad as with Num Lock. One thread.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/KeyboardLayout.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

class XkbKeyboardLayout final : public KeyboardLayout {
public:
    // The server's core keyboard; the connection outlives it. Without a display or XKB it translates nothing.
    explicit XkbKeyboardLayout(const XConnection& connection);
    // A layout of the machine's list, such as "de" with the variant "nodeadkeys".
    XkbKeyboardLayout(const std::string& layout, const std::string& variant, xkb_layout_index_t group = 0);
    XkbKeyboardLayout(XkbKeymap keymap, xkb_layout_index_t group) : keymap_(std::move(keymap)), group_(group) {}

    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override;
    // The keyboard's other groups.
    [[nodiscard]] std::vector<std::unique_ptr<KeyboardLayout>> others() const override;
    // Applications may take the third level for that of the last event that they have read.
    [[nodiscard]] ModifierFlags slowModifiers() const override { return modifier::option; }
    // Compares the server's keymap with the one that was read: one round trip. The server also tells of a new one
    // whenever another keyboard is used, which is mostly the same one again; and a switch of the group is none.
    [[nodiscard]] bool refresh() override;
    [[nodiscard]] bool available() const { return keymap_ != nullptr; }
    [[nodiscard]] const XkbKeymap& keymap() const { return keymap_; }
    // Of the layout with this number, as in PostedKey; 0 is the one in force.
    [[nodiscard]] std::uint8_t group(std::uint8_t layout = 0) const;

private:
    void read();
    [[nodiscard]] std::vector<std::uint8_t> mapInServer() const;

    const XConnection* connection_ = nullptr;
    std::vector<std::uint8_t> map_;  // as the server sent it
    XkbKeymap keymap_;
    xkb_layout_index_t group_ = 0;
};

}  // namespace vantor
