#include "platform/linux/XkbKeyboardLayout.h"

#include <array>

#include "platform/KeyClasses.h"
#include "platform/linux/KeyCodes.h"

namespace vantor {

namespace {

struct Held {
    ModifierFlags flag;
    KeyCode keyCode;
};
// The keys that are posted for each modifier.
constexpr std::array<Held, 3> held = {{{modifier::shift, 56}, {modifier::control, 59}, {modifier::option, 61}}};

}  // namespace

XkbKeyboardLayout::XkbKeyboardLayout(const XConnection& connection) {
    keymap_ = coreKeymap(connection);
    if (const XkbState state = coreState(connection, keymap_))
        group_ = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
}

XkbKeyboardLayout::XkbKeyboardLayout(const std::string& layout, const std::string& variant, xkb_layout_index_t group)
    : keymap_(namedKeymap(layout, variant)), group_(group) {}

std::optional<KeyboardLayout::Translation> XkbKeyboardLayout::translate(KeyCode keyCode, ModifierFlags flags) const {
    const auto key = xKeycodeOf(keyCode);
    if (!keymap_ || !key) return std::nullopt;
    const XkbState state(xkb_state_new(keymap_.get()));
    if (!state) return std::nullopt;

    xkb_mod_mask_t locked = 0;
    if (isKeypadKey(keyCode)) {
        const xkb_mod_index_t numLock = xkb_keymap_mod_get_index(keymap_.get(), XKB_MOD_NAME_NUM);
        if (numLock != XKB_MOD_INVALID) locked = xkb_mod_mask_t{1} << numLock;
    }
    xkb_state_update_mask(state.get(), 0, 0, locked, 0, 0, group_);
    // Pressed rather than masked: only so it is what the posted keys really do on this layout.
    for (const auto& [flag, modifierKey] : held)
        if (flags & flag) xkb_state_update_key(state.get(), *xKeycodeOf(modifierKey), XKB_KEY_DOWN);

    std::array<char, 64> text{};
    const int length = xkb_state_key_get_utf8(state.get(), *key, text.data(), text.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= text.size()) return std::nullopt;
    return Translation{std::string(text.data(), static_cast<std::size_t>(length)), flags};
}

}  // namespace vantor
