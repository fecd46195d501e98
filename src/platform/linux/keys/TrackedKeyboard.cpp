#include "platform/linux/keys/TrackedKeyboard.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <utility>

#include "platform/KeyClasses.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

// The core protocol's modifier bits, which the keyboard library numbers the same way. By convention Mod1 is Alt, Mod4
// the Super key, Mod5 the third level.
constexpr xkb_mod_mask_t shiftBit = 1 << 0;
constexpr xkb_mod_mask_t lockBit = 1 << 1;
constexpr xkb_mod_mask_t controlBit = 1 << 2;
constexpr xkb_mod_mask_t altBits = 1 << 3 | 1 << 7;
constexpr xkb_mod_mask_t superBit = 1 << 6;

}  // namespace

TrackedKeyboard::TrackedKeyboard(XkbKeymap keymap, const HeldKeys& held, const ServerState& server)
    : keymap_(std::move(keymap)), state_(keymap_ ? xkb_state_new(keymap_.get()) : nullptr) {
    for (std::size_t key = 0; key < held.size(); ++key)
        if (held[key]) update(static_cast<std::uint8_t>(key), true);
    resynchronise(server);
}

void TrackedKeyboard::update(std::uint8_t xKeycode, bool down) {
    // A repeat is no second press: the library would then wait for a second release.
    if (held_[xKeycode] == down) return;
    held_[xKeycode] = down;
    if (state_) xkb_state_update_key(state_.get(), xKeycode, down ? XKB_KEY_DOWN : XKB_KEY_UP);
}

void TrackedKeyboard::resynchronise(const ServerState& server) {
    if (!state_) return;
    const auto held = held_.none() ? server.held : xkb_state_serialize_mods(state_.get(), XKB_STATE_MODS_DEPRESSED);
    xkb_state_update_mask(state_.get(), held, server.latched, server.locked, 0, 0, server.group);
}

ModifierFlags TrackedKeyboard::flags() const {
    if (!state_) return 0;
    const auto active = xkb_state_serialize_mods(state_.get(), XKB_STATE_MODS_EFFECTIVE);
    const auto locked = xkb_state_serialize_mods(state_.get(), XKB_STATE_MODS_LOCKED);
    ModifierFlags flags = 0;
    if (active & shiftBit) flags |= modifier::shift;
    if (active & controlBit) flags |= modifier::control;
    if (active & altBits) flags |= modifier::option;
    if (active & superBit) flags |= modifier::command;
    if (locked & lockBit) flags |= modifier::capsLock;
    return flags;
}

bool TrackedKeyboard::actsAsModifier(std::uint8_t xKeycode) const {
    if (!state_) return false;
    // The player may have put a modifier onto another key. Number Lock is a key here, as keypad Clear.
    const xkb_keysym_t symbol = xkb_state_key_get_one_sym(state_.get(), xKeycode);
    return (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R) ||
           (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock);
}

std::optional<KeyEvent> TrackedKeyboard::eventFor(std::uint8_t xKeycode, bool down) const {
    const auto keyCode = keyCodeOfX(xKeycode);
    if (!keyCode) return std::nullopt;
    KeyEvent event;
    event.keyCode = *keyCode;
    event.flags = flags();
    if (isModifierKey(*keyCode) || actsAsModifier(xKeycode)) {
        event.type = KeyEventType::flagsChanged;
        return event;
    }
    event.type = down ? KeyEventType::keyDown : KeyEventType::keyUp;
    if (isKeypadKey(*keyCode)) event.flags |= modifier::numericPad;
    if (carriesFunctionFlag(*keyCode)) event.flags |= modifier::function;
    if (keymap_) {
        const auto group = xkb_state_serialize_layout(state_.get(), XKB_STATE_LAYOUT_EFFECTIVE);
        if (auto plain = XkbKeyboardLayout(shared(keymap_), group).translate(*keyCode, 0))
            event.charactersWithoutModifiers = std::move(plain->characters);
    }
    return event;
}

}  // namespace vantor
