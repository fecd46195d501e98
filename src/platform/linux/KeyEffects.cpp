#include "platform/linux/KeyEffects.h"

#include <algorithm>

namespace vantor {

KeyEffects keyEffects(const XkbKeymap& keymap, xkb_layout_index_t group) {
    constexpr xkb_mod_mask_t realModifiers = 0xff;
    constexpr xkb_mod_mask_t shiftBit = 1;
    constexpr xkb_layout_index_t groupLimit = 4;  // the X server's
    KeyEffects effects;
    const XkbState state(keymap ? xkb_state_new(keymap.get()) : nullptr);
    if (!state) return effects;
    effects.groups =
        static_cast<std::uint8_t>(std::clamp<xkb_layout_index_t>(xkb_keymap_num_layouts(keymap.get()), 1, groupLimit));
    const auto last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap.get()), 255);
    for (auto key = xkb_keymap_min_keycode(keymap.get()); key <= last; ++key) {
        for (xkb_layout_index_t each = 0; each < xkb_keymap_num_layouts(keymap.get()); ++each) {
            for (const xkb_mod_mask_t shift : {xkb_mod_mask_t{0}, shiftBit}) {
                // The locked ones choose the level; what a press adds to them shows beside them.
                xkb_state_update_mask(state.get(), 0, 0, shift, 0, 0, each);
                const auto changed = xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
                if (changed & (XKB_STATE_MODS_DEPRESSED | XKB_STATE_MODS_LATCHED | XKB_STATE_MODS_LOCKED |
                               XKB_STATE_LAYOUT_DEPRESSED | XKB_STATE_LAYOUT_LATCHED | XKB_STATE_LAYOUT_LOCKED))
                    effects.choosers.set(key);
                if (each == group && shift == 0)
                    effects.modifiers[key] = static_cast<std::uint8_t>(
                        xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED) & realModifiers);
                xkb_state_update_key(state.get(), key, XKB_KEY_UP);
            }
        }
    }
    return effects;
}

}  // namespace vantor
