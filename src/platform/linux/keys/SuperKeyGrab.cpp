#include "platform/linux/keys/SuperKeyGrab.h"

#include <sys/socket.h>
#include <xcb/xinput.h>

namespace vantor {
namespace {

// By convention Mod4 is the Super key. Of the other seven every combination is grabbed, which spares asking which of
// them are locks.
constexpr std::uint16_t superBit = XCB_MOD_MASK_4;
constexpr std::uint16_t combinations = 1 << 8;

}  // namespace

SuperKeyGrab::SuperKeyGrab(std::uint8_t xKeycode) : key_(xKeycode) {
    auto* const server = connection_.get();
    if (!server) return;
    const auto refused =
        owned(xcb_request_check(server, xcb_grab_key_checked(server, 0, connection_.root(), superBit, key_,
                                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC)));
    if (refused || connection_.isLost()) return;
    holds_ = true;
    // Asked for here: the thread only uses it.
    static_cast<void>(connection_.hasRawKeys());
    // One of these may be another client's; the key alone with Super is what matters.
    for (std::uint16_t modifiers = 0; modifiers < combinations; ++modifiers)
        if ((modifiers & superBit) != 0 && modifiers != superBit) grab(modifiers);
    xcb_flush(server);
    thread_ = std::thread([this] { listen(); });
}

SuperKeyGrab::~SuperKeyGrab() {
    auto* const server = connection_.get();
    if (!thread_.joinable()) return;
    xcb_ungrab_key(server, key_, connection_.root(), XCB_MOD_MASK_ANY);
    xcb_ungrab_keyboard(server, XCB_CURRENT_TIME);
    const auto done = owned(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    // Ends the thread's wait.
    shutdown(xcb_get_file_descriptor(server), SHUT_RDWR);
    thread_.join();
}

void SuperKeyGrab::listen() {
    while (const auto event = owned(xcb_wait_for_event(connection_.get()))) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            handlePress(reinterpret_cast<const xcb_key_press_event_t&>(*event).state);
        } else if (down_ && isRelease(*event)) {
            handleRelease();
        }
        xcb_flush(connection_.get());
    }
}

void SuperKeyGrab::handlePress(std::uint16_t modifiers) {
    if (!down_ && (modifiers & superBit) == 0) {
        // A new press, quicker than the end of the last one's grab: the application's own.
        xcb_allow_events(connection_.get(), XCB_ALLOW_REPLAY_KEYBOARD, XCB_CURRENT_TIME);
        return;
    }
    if (!down_) {
        // Should Super go up first, the key repeats without it, and that is none of the application's either.
        for (std::uint16_t others = 0; others < combinations; ++others)
            if ((others & superBit) == 0) grab(others);
        connection_.selectRawKeys(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
        down_ = true;
    }
    // Lets go of the keyboard, and of what it has held back since.
    xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
    // The key's own end may have been among that, of which the holder of a grab gets no raw event.
    if (!keyIsDown()) handleRelease();
}

void SuperKeyGrab::handleRelease() {
    down_ = false;
    connection_.selectRawKeys(0);
    for (std::uint16_t modifiers = 0; modifiers < combinations; ++modifiers)
        if ((modifiers & superBit) == 0) xcb_ungrab_key(connection_.get(), key_, connection_.root(), modifiers);
}

bool SuperKeyGrab::isRelease(const xcb_generic_event_t& event) const {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return false;
    const auto& key = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
    return key.extension == connection_.inputOpcode() && key.event_type == XCB_INPUT_RAW_KEY_RELEASE &&
           key.detail == key_;
}

bool SuperKeyGrab::keyIsDown() const {
    const auto keys = owned(xcb_query_keymap_reply(connection_.get(), xcb_query_keymap(connection_.get()), nullptr));
    return keys && (keys->keys[key_ / 8] & (1U << (key_ % 8))) != 0;
}

void SuperKeyGrab::grab(std::uint16_t modifiers) const {
    xcb_grab_key(connection_.get(), 0, connection_.root(), modifiers, key_, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
}

}  // namespace vantor
