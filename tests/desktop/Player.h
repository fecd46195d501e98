#pragma once
// The player's side of the server that DISPLAY names: a window that has the focus and takes down what is typed into it,
// keys pressed as a hand would, locks, groups, and the state that the keyboard is in. One thread.

#include <sys/uio.h>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/XConnection.h"
#include "platform/linux/keys/KeyboardWatch.h"
#include "platform/linux/keys/XkbHandles.h"

namespace vantor {

class Player {
public:
    // What was typed, read in the two ways in which clients do.
    struct Typed {
        std::string byEvents;   // modifiers and group out of each key event: older toolkits and most games
        std::string byNotices;  // modifiers and group from the server's notices of them: today's toolkits
    };
    using Keys = std::vector<std::pair<std::uint8_t, bool>>;  // each with whether it went down

    Player() {
        const std::uint32_t values[] = {
            1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE};
        xcb_create_window(server_.get(), XCB_COPY_FROM_PARENT, window_, server_.root(), 10, 10, 50, 50, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(server_.get(), window_);
        static_cast<void>(server_.hasKeyboard());  // asks for the extension, which has to be there before its events
        xcb_xkb_select_events(server_.get(), XCB_XKB_ID_USE_CORE_KBD, keyboardNotices, 0, keyboardNotices, everyMapPart,
                              everyMapPart, nullptr);
        takeFocus();
        readKeymapAgain();
    }

    void takeFocus() { giveFocus(window_); }
    void giveFocus(xcb_window_t window) {
        xcb_set_input_focus(server_.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        settle();
    }
    [[nodiscard]] xcb_window_t focus() const {
        const auto reply = owned(xcb_get_input_focus_reply(server_.get(), xcb_get_input_focus(server_.get()), nullptr));
        return reply ? reply->focus : xcb_window_t{XCB_NONE};
    }
    // Posted by another client than Vantor; done when it returns.
    void press(std::uint8_t xKeycode, bool down) {
        xcb_test_fake_input(server_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME,
                            server_.root(), 0, 0, 0);
        settle();
    }
    void tap(std::uint8_t xKeycode) {
        press(xKeycode, true);
        press(xKeycode, false);
    }
    void click(std::int16_t x, std::int16_t y) {
        xcb_test_fake_input(server_.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, server_.root(), x, y, 0);
        for (const auto kind : std::to_array<std::uint8_t>({XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}))
            xcb_test_fake_input(server_.get(), kind, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        settle();
    }
    void lock(std::uint8_t modifiers) {
        xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0xff, modifiers, 0, 0, 0, 0, 0);
        settle();
    }
    void latch(std::uint8_t modifiers) {
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
    void lockGroup(std::uint8_t group) {
        xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
        settle();
    }
    // Nothing down, latched or locked, and the first group.
    void letGo() {
        const auto down = keysDown();
        for (std::size_t key = 0; key < down.size(); ++key)
            if (down[key]) press(static_cast<std::uint8_t>(key), false);
        xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0xff, 0, 1, 0, 0xff, 1, 0);
        settle();
    }

    [[nodiscard]] KeyboardState state() const {
        KeyboardState state;
        static_cast<void>(readKeyboard(server_, state));
        return state;
    }
    [[nodiscard]] std::bitset<256> keysDown() const {
        std::bitset<256> down;
        const auto reply = owned(xcb_query_keymap_reply(server_.get(), xcb_query_keymap(server_.get()), nullptr));
        for (std::size_t key = 0; reply && key < down.size(); ++key)
            down[key] = (reply->keys[key / 8] >> key % 8 & 1) != 0;
        return down;
    }
    // Nothing down, latched or locked, and the first group.
    [[nodiscard]] bool isAtRest() const { return keysDown().none() && state() == KeyboardState(); }
    // "held 0 latched 0 locked 2 group 1 keys 50"
    [[nodiscard]] std::string condition() const {
        const auto now = state();
        const auto down = keysDown();
        std::string out = "held " + std::to_string(now.held) + " latched " + std::to_string(now.latched) + " locked " +
                          std::to_string(now.locked) + " group " + std::to_string(now.lockedGroup) + " keys";
        for (std::size_t key = 0; key < down.size(); ++key)
            if (down[key]) out += ' ' + std::to_string(key);
        return out;
    }
    // Since it was last asked.
    [[nodiscard]] Typed typed() {
        settle();
        drain();
        return std::exchange(typed_, {});
    }
    [[nodiscard]] std::string typedText() { return typed().byEvents; }
    [[nodiscard]] Keys keysSeen() {
        settle();
        drain();
        return std::exchange(keysSeen_, {});
    }
    // How often a grab has taken the keyboard from this window.
    [[nodiscard]] int grabsSeen() {
        settle();
        drain();
        return grabsSeen_;
    }
    // Takes in what is here. Never waits, so that it can be called while the other side types.
    void drain() {
        while (const auto event = owned(xcb_poll_for_event(server_.get()))) handle(*event);
    }
    // Ends the connection of another client by one of its resources.
    void killClientOf(std::uint32_t resource) {
        xcb_kill_client(server_.get(), resource);
        settle();
    }
    void settle() const { (void)focus(); }
    [[nodiscard]] const XConnection& server() const { return server_; }

private:
    static constexpr std::uint16_t keyboardNotices =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    static constexpr std::uint16_t everyMapPart = 0xff;

    // Clients take a key with Control, Alt or Super for a shortcut, unless the layout chooses a level with that
    // modifier.
    static bool isShortcut(xkb_state* state, xkb_keycode_t key) {
        for (const char* name : {XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT, XKB_MOD_NAME_LOGO}) {
            const auto index = xkb_keymap_mod_get_index(xkb_state_get_keymap(state), name);
            if (xkb_state_mod_index_is_active(state, index, XKB_STATE_MODS_EFFECTIVE) == 1 &&
                xkb_state_mod_index_is_consumed(state, key, index) != 1)
                return true;
        }
        return false;
    }

    static std::string textOf(xkb_state* state, xkb_keycode_t key) {
        if (isShortcut(state, key)) return {};
        std::array<char, 64> characters{};
        const int length = xkb_state_key_get_utf8(state, key, characters.data(), characters.size());
        return {characters.data(), static_cast<std::size_t>(length)};
    }

    void handle(const xcb_generic_event_t& event) {
        const std::uint8_t type = event.response_type & 0x7f;
        if (type == XCB_FOCUS_OUT) {
            grabsSeen_ += reinterpret_cast<const xcb_focus_out_event_t&>(event).mode == XCB_NOTIFY_MODE_GRAB;
        } else if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
            keysSeen_.emplace_back(key.detail, type == XCB_KEY_PRESS);
            if (type == XCB_KEY_RELEASE) return;
            if (stale_) readKeymapAgain();
            // The real modifiers and the group in the state of a key event (the X Keyboard Extension, 2.2.2).
            xkb_state_update_mask(byEvents_.get(), key.state & 0xff, 0, 0, 0, 0, key.state >> 13 & 3);
            typed_.byEvents += textOf(byEvents_.get(), key.detail);
            typed_.byNotices += textOf(byNotices_.get(), key.detail);
        } else if (type == server_.keyboardEventBase() && event.pad0 == XCB_XKB_STATE_NOTIFY) {
            const auto& notice = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
            if (stale_) readKeymapAgain();
            xkb_state_update_mask(byNotices_.get(), notice.baseMods, notice.latchedMods, notice.lockedMods,
                                  static_cast<xkb_layout_index_t>(notice.baseGroup),
                                  static_cast<xkb_layout_index_t>(notice.latchedGroup), notice.lockedGroup);
        } else if (type == server_.keyboardEventBase()) {
            stale_ = true;
        }
    }
    void readKeymapAgain() {
        stale_ = false;
        keymap_ = coreKeymap(server_);
        byEvents_ = XkbState(xkb_state_new(keymap_.get()));
        const XkbState before = std::exchange(
            byNotices_, byNotices_ ? XkbState(xkb_state_new(keymap_.get())) : coreState(server_, keymap_));
        // What is held and locked outlives a change of the keymap.
        if (before)
            xkb_state_update_mask(byNotices_.get(), xkb_state_serialize_mods(before.get(), XKB_STATE_MODS_DEPRESSED),
                                  xkb_state_serialize_mods(before.get(), XKB_STATE_MODS_LATCHED),
                                  xkb_state_serialize_mods(before.get(), XKB_STATE_MODS_LOCKED),
                                  xkb_state_serialize_layout(before.get(), XKB_STATE_LAYOUT_DEPRESSED),
                                  xkb_state_serialize_layout(before.get(), XKB_STATE_LAYOUT_LATCHED),
                                  xkb_state_serialize_layout(before.get(), XKB_STATE_LAYOUT_LOCKED));
    }

    XConnection server_;
    xcb_window_t window_ = xcb_generate_id(server_.get());
    XkbKeymap keymap_;
    XkbState byEvents_;
    XkbState byNotices_;
    bool stale_ = true;
    Typed typed_;
    Keys keysSeen_;
    int grabsSeen_ = 0;
};

// One for all tests: a focused window that vanishes makes the window manager choose another, at its own time.
[[nodiscard]] inline Player& sharedPlayer() {
    static Player player;
    return player;
}

namespace xkey {
inline constexpr std::uint8_t controlLeft = 37;
inline constexpr std::uint8_t a = 38;
inline constexpr std::uint8_t shiftLeft = 50;
inline constexpr std::uint8_t v = 55;
inline constexpr std::uint8_t shiftRight = 62;
inline constexpr std::uint8_t altLeft = 64;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t controlRight = 105;
inline constexpr std::uint8_t altRight = 108;
inline constexpr std::uint8_t superLeft = 133;
inline constexpr std::uint8_t menu = 135;
}  // namespace xkey

namespace xmod {
inline constexpr std::uint8_t shift = 1;
inline constexpr std::uint8_t caps = 2;
inline constexpr std::uint8_t num = 16;
}  // namespace xmod

}  // namespace vantor
