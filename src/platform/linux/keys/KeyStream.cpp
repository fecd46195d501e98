#include "platform/linux/keys/KeyStream.h"

#include <xcb/xinput.h>

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <utility>

namespace vantor {

KeyStream::KeyStream(const XConnection& connection, PostedKeyRecord& record)
    : connection_(connection), record_(record) {
    if (connection_.get()) select();
}

void KeyStream::restart() {
    ahead_.reset();
    keyboard_.reset();
    ownKeys_.reset();
    presses_.fill(std::nullopt);
    focused_ = XCB_NONE;
    record_.clear();
    if (!connection_.get()) return;
    select();
    // At once: what the player holds by now was pressed unseen.
    takeKeyboard();
}

void KeyStream::select() {
    connection_.selectRawKeys(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
    if (connection_.hasKeyboard()) {
        constexpr std::uint16_t events =
            XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
        xcb_xkb_select_events_aux(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, events, 0, events, 0, 0, nullptr);
    }
    xcb_flush(connection_.get());
}

void KeyStream::followFocusOf(xcb_window_t window) {
    constexpr std::uint32_t focus = XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &focus);
    // It may have it already where the connection is a new one.
    const XReply<xcb_get_input_focus_reply_t> now(
        xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    if (now && now->focus == window) focused_ = window;
}

void KeyStream::takeKeyboard() {
    stale_ = false;
    TrackedKeyboard::ServerState server;
    if (connection_.hasKeyboard()) {
        const XReply<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
            connection_.get(), xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
        if (state) server = {state->baseMods, state->latchedMods, state->lockedMods, state->group};
    }
    // A keyboard that is only replaced keeps the keys that the stream has down; the server may be ahead of it.
    auto held = keyboard_ ? keyboard_->held() : TrackedKeyboard::HeldKeys();
    if (!keyboard_ && connection_.hasRawKeys()) {
        const XReply<xcb_query_keymap_reply_t> keys(
            xcb_query_keymap_reply(connection_.get(), xcb_query_keymap(connection_.get()), nullptr));
        for (std::size_t key = 0; keys && key < held.size(); ++key)
            held[key] = (keys->keys[key / 8] & (1U << (key % 8))) != 0;
    }
    keyboard_.emplace(coreKeymap(connection_), held, server);
}

std::optional<KeyEvent> KeyStream::eventFor(std::uint8_t xKeycode, bool down) {
    if (!connection_.get()) return std::nullopt;
    if (!keyboard_ || stale_) takeKeyboard();
    return keyboard_->eventFor(xKeycode, down);
}

void KeyStream::handleKey(std::uint8_t xKeycode, bool down, std::uint32_t time,
                          const std::function<void(const StreamedKey&)>& handler) {
    const bool ownPost = record_.claim(xKeycode, down);
    if (!keyboard_ || stale_) takeKeyboard();
    // The tracked keyboard is the player's: what is typed for him, and released under his hands, is not his doing.
    if (ownPost) {
        ownKeys_[xKeycode] = down;
    } else {
        keyboard_->update(xKeycode, down);
    }
    handler({xKeycode, down, time, ownPost, focused_ != XCB_NONE,
             ownPost ? std::nullopt : playersEvent(xKeycode, down, time)});
}

std::optional<KeyEvent> KeyStream::playersEvent(std::uint8_t xKeycode, bool down, std::uint32_t time) {
    auto event = keyboard_->eventFor(xKeycode, down);
    if (!event || event->type == KeyEventType::flagsChanged) return event;
    std::optional<Press>& press = presses_.at(xKeycode);
    if (down) {
        if (!press) press = {event->flags, time};
    } else if (press) {
        event->flags = press->flags;
        event->heldFor = std::chrono::milliseconds(time - press->time);
        press.reset();
    }
    return event;
}

// The server puts the focus's moves and the keys into one order, in which the answer to a question comes too late.
void KeyStream::handleFocus(const xcb_focus_in_event_t& event, bool in) {
    // A grab of the keyboard moves no focus, and the pointer's share in it is none of the window's own.
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB) return;
    if (event.detail >= XCB_NOTIFY_DETAIL_POINTER) return;
    if (in)
        focused_ = event.event;
    else if (event.event == focused_ && event.detail != XCB_NOTIFY_DETAIL_INFERIOR)
        focused_ = XCB_NONE;
}

void KeyStream::handleKeyboardNotice(const xcb_generic_event_t& event) {
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    switch (state.xkbType) {
        case XCB_XKB_STATE_NOTIFY:
            if (keyboard_)
                keyboard_->resynchronise({ownKeys_.any() ? xkb_mod_mask_t{0} : state.baseMods, state.latchedMods,
                                          state.lockedMods, state.group});
            break;
        case XCB_XKB_MAP_NOTIFY:
        case XCB_XKB_NEW_KEYBOARD_NOTIFY:
            // They come in swarms; the next key reads the keymap once.
            stale_ = true;
            break;
        default:
            break;
    }
}

bool KeyStream::readAhead() {
    if (!ahead_ && connection_.get()) ahead_.reset(xcb_poll_for_queued_event(connection_.get()));
    return ahead_ != nullptr;
}

XReply<xcb_generic_event_t> KeyStream::next() {
    if (ahead_) return std::exchange(ahead_, nullptr);
    return XReply<xcb_generic_event_t>(xcb_poll_for_event(connection_.get()));
}

void KeyStream::poll(const std::function<void(const StreamedKey&)>& handler) {
    if (!connection_.get()) return;
    while (const XReply<xcb_generic_event_t> event = next()) {
        const std::uint8_t type = event->response_type & 0x7f;
        if (type == XCB_GE_GENERIC) {
            const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event.get());
            if (generic->extension != connection_.inputOpcode()) continue;
            const auto* key = reinterpret_cast<const xcb_input_raw_key_press_event_t*>(event.get());
            if (key->event_type != XCB_INPUT_RAW_KEY_PRESS && key->event_type != XCB_INPUT_RAW_KEY_RELEASE) continue;
            handleKey(static_cast<std::uint8_t>(key->detail), key->event_type == XCB_INPUT_RAW_KEY_PRESS, key->time,
                      handler);
        } else if (type == XCB_FOCUS_IN || type == XCB_FOCUS_OUT) {
            handleFocus(*reinterpret_cast<const xcb_focus_in_event_t*>(event.get()), type == XCB_FOCUS_IN);
        } else if (connection_.hasKeyboard() && type == connection_.keyboardEventBase()) {
            handleKeyboardNotice(*event);
        }
    }
}

void KeyStream::pollToNow(const std::function<void(const StreamedKey&)>& handler) {
    if (!connection_.get()) return;
    // The reply comes after every event that the server made before.
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    poll(handler);
    // What the stream had to show of the posts before this round trip has been seen.
    record_.expire(PostedKeyRecord::Clock::now());
}

}  // namespace vantor
