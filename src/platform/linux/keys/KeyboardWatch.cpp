#include "platform/linux/keys/KeyboardWatch.h"

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

namespace vantor {

bool readKeyboard(const XConnection& connection, KeyboardState& state) {
    if (!connection.hasKeyboard()) return false;
    const XReply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(
        connection.get(), xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!reply) return false;
    state = {reply->baseMods, reply->latchedMods, reply->lockedMods, reply->group, reply->lockedGroup};
    return true;
}

KeyboardWatch::KeyboardWatch() {
    if (!connection_.hasKeyboard()) return;
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    xcb_xkb_select_events(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, events, 0, events, 0, 0, nullptr);
    // Selected first, so that no change falls between.
    available_ = readKeyboard(connection_, state_);
}

const KeyboardState& KeyboardWatch::newest() {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        if ((event->response_type & 0x7f) != connection_.keyboardEventBase()) continue;
        const auto& notice = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(*event);
        if (notice.xkbType != XCB_XKB_STATE_NOTIFY) continue;
        state_ = {notice.baseMods, notice.latchedMods, notice.lockedMods, notice.group, notice.lockedGroup};
    }
    return state_;
}

}  // namespace vantor
