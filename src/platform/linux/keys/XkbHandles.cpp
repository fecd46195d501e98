#include "platform/linux/keys/XkbHandles.h"

#include <xkbcommon/xkbcommon-x11.h>

namespace vantor {

XkbKeymap namedKeymap(const std::string& layout, const std::string& variant, const std::string& options) {
    const XkbContext context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context) return nullptr;
    // The null answer says it; the library would write a page on standard error.
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    const xkb_rule_names names = {"evdev", "pc105", layout.c_str(), variant.c_str(), options.c_str()};
    return XkbKeymap(xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

XkbKeymap coreKeymap(const XConnection& connection) {
    if (!connection.hasKeyboard()) return nullptr;
    const XkbContext context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    const int device = xkb_x11_get_core_keyboard_device_id(connection.get());
    if (!context || device < 0) return nullptr;
    return XkbKeymap(
        xkb_x11_keymap_new_from_device(context.get(), connection.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

XkbState coreState(const XConnection& connection, const XkbKeymap& keymap) {
    if (!keymap) return nullptr;
    const int device = xkb_x11_get_core_keyboard_device_id(connection.get());
    return device < 0 ? nullptr : XkbState(xkb_x11_state_new_from_device(keymap.get(), connection.get(), device));
}

}  // namespace vantor
