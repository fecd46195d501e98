#pragma once
// Owners of the keyboard library's objects, and where keymaps come from. One thread.

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <string>

#include "platform/linux/XConnection.h"

namespace vantor {

struct XkbUnref {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using XkbContext = std::unique_ptr<xkb_context, XkbUnref>;
using XkbKeymap = std::unique_ptr<xkb_keymap, XkbUnref>;
using XkbState = std::unique_ptr<xkb_state, XkbUnref>;

// Another owner of the same keymap.
[[nodiscard]] inline XkbKeymap shared(const XkbKeymap& keymap) { return XkbKeymap(xkb_keymap_ref(keymap.get())); }

// Null when the layout is not in the machine's list.
[[nodiscard]] XkbKeymap namedKeymap(const std::string& layout, const std::string& variant = {},
                                    const std::string& options = {});
// The core keyboard's; null without a display or XKB. Several round trips.
[[nodiscard]] XkbKeymap coreKeymap(const XConnection& connection);
// What the core keyboard holds and has locked; null with a null keymap.
[[nodiscard]] XkbState coreState(const XConnection& connection, const XkbKeymap& keymap);

}  // namespace vantor
