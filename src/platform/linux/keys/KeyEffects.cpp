#include "platform/linux/keys/KeyEffects.h"

#include <algorithm>
#include <array>

namespace vantor {
namespace {

constexpr xkb_mod_mask_t realModifiers = 0xff;
constexpr xkb_mod_mask_t shiftBit = 1;
constexpr xkb_layout_index_t groupLimit = 4;  // the X server's

}  // namespace

KeyEffects::KeyEffects(const XkbKeymap& keymap) : keymap_(keymap ? shared(keymap) : nullptr) {
    if (keymap_) findModifierKeys();
}

void KeyEffects::findModifierKeys() {
    const XkbState state(xkb_state_new(keymap_.get()));
    if (!state) return;
    const auto groups = xkb_keymap_num_layouts(keymap_.get());
    groups_ = static_cast<std::uint8_t>(std::clamp<xkb_layout_index_t>(groups, 1, groupLimit));
    const auto last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap_.get()), 255);
    for (auto key = xkb_keymap_min_keycode(keymap_.get()); key <= last; ++key) {
        for (xkb_layout_index_t each = 0; each < groups; ++each) {
            for (const xkb_mod_mask_t shift : {xkb_mod_mask_t{0}, shiftBit}) {
                // The locked ones choose the level; what a press adds to them shows beside them.
                xkb_state_update_mask(state.get(), 0, 0, shift, 0, 0, each);
                const auto changed = xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
                if (changed & (XKB_STATE_MODS_DEPRESSED | XKB_STATE_MODS_LATCHED | XKB_STATE_MODS_LOCKED |
                               XKB_STATE_LAYOUT_DEPRESSED | XKB_STATE_LAYOUT_LATCHED | XKB_STATE_LAYOUT_LOCKED))
                    modifierKeys_.set(key);
                xkb_state_update_key(state.get(), key, XKB_KEY_UP);
            }
        }
    }
}

bool KeyEffects::differsBeside(const std::vector<std::uint8_t>& others, std::uint8_t key, std::uint8_t group) const {
    const auto outcome = [&](const std::vector<std::uint8_t>& held) {
        std::array<std::uint32_t, 6> after{};
        const XkbState state(xkb_state_new(keymap_.get()));
        if (!state) return after;
        xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
        for (const auto each : held) xkb_state_update_key(state.get(), each, XKB_KEY_DOWN);
        xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
        for (const auto each : held) xkb_state_update_key(state.get(), each, XKB_KEY_UP);
        after[0] = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED);
        after[1] = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_DEPRESSED);
        xkb_state_update_key(state.get(), key, XKB_KEY_UP);
        after[2] = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LATCHED);
        after[3] = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED);
        after[4] = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_LATCHED);
        after[5] = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_LOCKED);
        return after;
    };
    return keymap_ && outcome(others) != outcome({});
}

KeyEffects::State KeyEffects::holding(const std::vector<std::uint8_t>& keys, std::uint8_t group) const {
    const State neutral = {0, group};
    const XkbState state(keys.empty() || !keymap_ ? nullptr : xkb_state_new(keymap_.get()));
    if (!state) return neutral;
    xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
    for (const auto key : keys) xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
    return {static_cast<std::uint8_t>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED) & realModifiers),
            static_cast<std::uint8_t>(xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE))};
}

}  // namespace vantor
