#include "platform/linux/keys/XkbKeyboardLayout.h"

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "platform/KeyClasses.h"
#include "platform/linux/keys/KeyCodes.h"

namespace vantor {

namespace {

struct Held {
    ModifierFlags flag;
    KeyCode keyCode;
};
// The keys that are posted for each modifier, in the order in which they go down: on some layouts a modifier key is
// another one while a modifier is held.
constexpr std::array<Held, 3> held = {{{modifier::option, 61}, {modifier::control, 59}, {modifier::shift, 56}}};

// Every client takes a key with one of these for a shortcut, unless the layout chooses a level with it.
constexpr std::array<const char*, 3> shortcutModifiers = {XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT, XKB_MOD_NAME_LOGO};

bool isShortcut(xkb_state* state, xkb_keycode_t key) {
    return std::any_of(shortcutModifiers.begin(), shortcutModifiers.end(), [&](const char* name) {
        const xkb_mod_index_t index = xkb_keymap_mod_get_index(xkb_state_get_keymap(state), name);
        return xkb_state_mod_index_is_active(state, index, XKB_STATE_MODS_EFFECTIVE) == 1 &&
               xkb_state_mod_index_is_consumed(state, key, index) != 1;
    });
}

bool isControlCharacter(std::string_view text) {
    return text.size() == 1 && (static_cast<unsigned char>(text.front()) < 0x20 || text.front() == 0x7f);
}

}  // namespace

XkbKeyboardLayout::XkbKeyboardLayout(const XConnection& connection) : connection_(&connection) {
    // Before the keymap: one that changes between is then read again.
    map_ = mapInServer();
    read();
}

void XkbKeyboardLayout::read() {
    keymap_ = coreKeymap(*connection_);
    if (const XkbState state = coreState(*connection_, keymap_))
        group_ = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
}

std::vector<std::uint8_t> XkbKeyboardLayout::mapInServer() const {
    if (!connection_->hasKeyboard() || connection_->isLost()) return {};
    constexpr std::uint16_t everyPart = 0xff;
    const auto asked = xcb_xkb_get_map(connection_->get(), XCB_XKB_ID_USE_CORE_KBD, everyPart, 0, 0, 0, 0, 0, 0, 0, 0,
                                       0, 0, 0, 0, 0, 0, 0, 0);
    const auto reply = owned(xcb_xkb_get_map_reply(connection_->get(), asked, nullptr));
    if (!reply) return {};
    // Behind the number of the request, which is another one each time.
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(reply.get());
    return {bytes + offsetof(xcb_xkb_get_map_reply_t, length), bytes + 32 + std::size_t{reply->length} * 4};
}

bool XkbKeyboardLayout::refresh() {
    if (!connection_) return false;
    auto now = mapInServer();
    if (now.empty() || now == map_) return false;
    map_ = std::move(now);
    read();
    return true;
}

std::vector<std::unique_ptr<KeyboardLayout>> XkbKeyboardLayout::others() const {
    std::vector<std::unique_ptr<KeyboardLayout>> layouts;
    for (std::uint8_t number = 1; keymap_ && number < xkb_keymap_num_layouts(keymap_.get()); ++number)
        layouts.push_back(std::make_unique<XkbKeyboardLayout>(shared(keymap_), group(number)));
    return layouts;
}

std::uint8_t XkbKeyboardLayout::group(std::uint8_t layout) const {
    if (!keymap_) return 0;
    return static_cast<std::uint8_t>((group_ + layout) % std::max(xkb_keymap_num_layouts(keymap_.get()), 1U));
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
    const auto lockedBefore = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED);
    const auto groupBefore = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_LOCKED);
    // Pressed rather than masked: only so it is what the posted keys really do on this layout.
    for (const auto& [flag, modifierKey] : held)
        if (flags & flag) xkb_state_update_key(state.get(), *xKeycodeOf(modifierKey), XKB_KEY_DOWN);

    // A key that stands in a modifier's place may lock something, which would outlast the press.
    if (xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED) != lockedBefore ||
        xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_LOCKED) != groupBefore)
        return std::nullopt;

    std::array<char, 64> text{};
    const int length = xkb_state_key_get_utf8(state.get(), *key, text.data(), text.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= text.size()) return std::nullopt;
    const std::string_view characters(text.data(), static_cast<std::size_t>(length));
    if (!isControlCharacter(characters) && isShortcut(state.get(), *key)) return std::nullopt;
    return Translation{std::string(characters), flags};
}

}  // namespace vantor
