#include "Player.h"

#include <sys/uio.h>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <array>

namespace vantor {

Player::Player() {
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(server_.get(), XCB_COPY_FROM_PARENT, window_, server_.root(), 10, 10, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values);
    xcb_map_window(server_.get(), window_);
    takeFocus();
}

Player& sharedPlayer() {
    static Player player;
    return player;
}

void Player::settle() const {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(server_.get(), xcb_get_input_focus(server_.get()), nullptr));
}

void Player::takeFocus() {
    xcb_set_input_focus(server_.get(), XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    settle();
}

void Player::press(std::uint8_t xKeycode, bool down) {
    xcb_test_fake_input(server_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME,
                        server_.root(), 0, 0, 0);
    settle();
}

void Player::tap(std::uint8_t xKeycode) {
    press(xKeycode, true);
    press(xKeycode, false);
}

void Player::lock(std::uint8_t modifiers) {
    xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0xff, modifiers, 0, 0, 0, 0, 0);
    settle();
}

void Player::latch(std::uint8_t modifiers) {
    // The generated function has no place for the latches' values.
    struct {
        std::uint8_t major, minor;
        std::uint16_t length = 4;
        std::uint16_t device = XCB_XKB_ID_USE_CORE_KBD;
        std::uint8_t affectLocks = 0, locks = 0, lockGroup = 0, groupLock = 0;
        std::uint8_t affectLatches, latches;
        std::uint8_t pad = 0, latchGroup = 0;
        std::uint16_t groupLatch = 0;
    } request = {};
    request.minor = XCB_XKB_LATCH_LOCK_STATE;
    request.affectLatches = request.latches = modifiers;
    iovec parts[4] = {};
    parts[2] = {&request, sizeof request};
    const xcb_protocol_request_t kind = {1, &xcb_xkb_id, XCB_XKB_LATCH_LOCK_STATE, 1};
    xcb_send_request(server_.get(), 0, parts + 2, &kind);
    settle();
}

void Player::lockGroup(std::uint8_t group) {
    xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    settle();
}

void Player::letGo() {
    const auto down = keysDown();
    for (std::size_t key = 0; key < down.size(); ++key)
        if (down[key]) press(static_cast<std::uint8_t>(key), false);
    xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0xff, 0, 1, 0, 0xff, 1, 0);
    settle();
}

KeyboardState Player::state() const {
    KeyboardState state;
    static_cast<void>(readKeyboard(server_, state));
    return state;
}

std::bitset<256> Player::keysDown() const {
    std::bitset<256> down;
    const XReply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(server_.get(), xcb_query_keymap(server_.get()), nullptr));
    for (std::size_t key = 0; reply && key < down.size(); ++key) down[key] = (reply->keys[key / 8] >> key % 8 & 1) != 0;
    return down;
}

std::string Player::typedText() {
    settle();
    std::string text;
    const XkbKeymap keymap = coreKeymap(server_);
    const XkbState state(xkb_state_new(keymap.get()));
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(server_.get())}) {
        if ((event->response_type & 0x7f) != XCB_KEY_PRESS) continue;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        xkb_state_update_mask(state.get(), key.state & 0xff, 0, 0, 0, 0, key.state >> 13 & 3);
        std::array<char, 16> characters{};
        const int length = xkb_state_key_get_utf8(state.get(), key.detail, characters.data(), characters.size());
        text.append(characters.data(), static_cast<std::size_t>(length));
    }
    return text;
}

void Player::killClientOf(std::uint32_t resource) {
    xcb_kill_client(server_.get(), resource);
    settle();
}

}  // namespace vantor
