#include "platform/linux/keys/KeyboardUndo.h"

#include <poll.h>
#include <xcb/xtest.h>

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <ctime>

#include "platform/linux/XReply.h"

namespace vantor {
namespace {

constexpr long patienceMilliseconds = 2000;

long millisecondsNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

bool isPresent(xcb_connection_t* connection, xcb_extension_t& extension) {
    const auto* data = xcb_get_extension_data(connection, &extension);
    return data && data->present;
}

// Whether an event says that the window is gone.
bool tellsOfItsEnd(const xcb_generic_event_t& event, xcb_window_t window) {
    return (event.response_type & 0x7f) == XCB_DESTROY_NOTIFY &&
           reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window;
}

void awaitEndOf(xcb_connection_t* connection, xcb_window_t sentinel) {
    if (sentinel == XCB_NONE) return;
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto gone = owned(xcb_request_check(
        connection, xcb_change_window_attributes_checked(connection, sentinel, XCB_CW_EVENT_MASK, &events)));
    if (gone) {
        return;
    }
    const long end = millisecondsNow() + patienceMilliseconds;
    for (bool ended = false; !ended;) {
        while (const auto event = owned(xcb_poll_for_event(connection)))
            ended = ended || tellsOfItsEnd(*event, sentinel);
        const long left = end - millisecondsNow();
        if (ended || left <= 0 || xcb_connection_has_error(connection)) return;
        pollfd socket = {xcb_get_file_descriptor(connection), POLLIN, 0};
        poll(&socket, 1, static_cast<int>(left));
    }
}

}  // namespace

void lockModifiers(xcb_connection_t* connection, std::uint8_t affected, std::uint8_t locked,
                   std::optional<std::uint8_t> group) {
    constexpr std::uint8_t everyLatch = 0xff;
    xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, affected, locked, group.has_value(),
                             group.value_or(0), everyLatch, 1, 0);
}

UndoVerdict undoKeyboard(xcb_connection_t* connection, const PendingKeyboardCleanup& pending) {
    if (xcb_connection_has_error(connection)) return UndoVerdict::unavailable;
    awaitEndOf(connection, pending.sentinel());
    if (pending.hasKeys() && isPresent(connection, xcb_test_id))
        for (unsigned key = 0; key < 256; ++key)
            if (pending.mayBeDown(static_cast<std::uint8_t>(key)))
                xcb_test_fake_input(connection, XCB_KEY_RELEASE, static_cast<std::uint8_t>(key), XCB_CURRENT_TIME,
                                    XCB_NONE, 0, 0, 0);
    // Even where none is owed: a key that was let go here may have been a latch.
    const auto locks = pending.locks();
    if (isPresent(connection, xcb_xkb_id)) {
        const auto ready =
            owned(xcb_xkb_use_extension_reply(connection, xcb_xkb_use_extension(connection, 1, 0), nullptr));
        lockModifiers(connection, locks.modifiers, locks.modifiers, locks.group);
    }
    const auto done = owned(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return xcb_connection_has_error(connection) ? UndoVerdict::unavailable : UndoVerdict::undone;
}

}  // namespace vantor
