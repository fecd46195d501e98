#include "sweep/Receiver.h"

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <array>
#include <utility>

namespace vantor::sweep {
namespace {

constexpr std::uint16_t wantedEvents =
    XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
constexpr std::uint16_t everyMapPart = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                       XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS |
                                       XCB_XKB_MAP_PART_KEY_ACTIONS | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                       XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;

// The group and the real modifiers in the state of a key event (the X Keyboard Extension, 2.2.2).
constexpr unsigned realModifiers = 0xff;
constexpr unsigned groupShift = 13;
constexpr unsigned groupBits = 3;

// Clients take a key with Control, Alt or Super for a shortcut, unless the layout chooses a level with that modifier.
bool isShortcut(xkb_state* state, xkb_keycode_t key) {
    for (const char* name : {XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT, XKB_MOD_NAME_LOGO}) {
        const auto index = xkb_keymap_mod_get_index(xkb_state_get_keymap(state), name);
        if (xkb_state_mod_index_is_active(state, index, XKB_STATE_MODS_EFFECTIVE) == 1 &&
            xkb_state_mod_index_is_consumed(state, key, index) != 1)
            return true;
    }
    return false;
}

void appendText(std::string& text, xkb_state* state, xkb_keycode_t key) {
    if (isShortcut(state, key)) return;
    std::array<char, 64> characters{};
    const int length = xkb_state_key_get_utf8(state, key, characters.data(), characters.size());
    if (length > 0) text.append(characters.data(), static_cast<std::size_t>(length));
}

}  // namespace

Receiver::Receiver() {
    if (!server_.hasKeyboard()) return;
    window_ = xcb_generate_id(server_.get());
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(server_.get(), XCB_COPY_FROM_PARENT, window_, server_.root(), 10, 10, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values);
    xcb_map_window(server_.get(), window_);
    xcb_xkb_select_events(server_.get(), XCB_XKB_ID_USE_CORE_KBD, wantedEvents, 0, wantedEvents, everyMapPart,
                          everyMapPart, nullptr);
    xcb_set_input_focus(server_.get(), XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    roundTrip();
    readKeymapAgain();
}

void Receiver::drain() {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(server_.get())}) handle(*event);
}

Receiver::Texts Receiver::take() {
    roundTrip();
    drain();
    return std::exchange(texts_, {});
}

void Receiver::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == XCB_KEY_PRESS) {
        readKey(reinterpret_cast<const xcb_key_press_event_t&>(event));
    } else if (type == server_.keyboardEventBase()) {
        const std::uint8_t kind = event.pad0;
        if (kind == XCB_XKB_STATE_NOTIFY) {
            const auto& notice = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
            if (stale_) readKeymapAgain();
            xkb_state_update_mask(byNotifications_.get(), notice.baseMods, notice.latchedMods, notice.lockedMods,
                                  static_cast<xkb_layout_index_t>(notice.baseGroup),
                                  static_cast<xkb_layout_index_t>(notice.latchedGroup), notice.lockedGroup);
        } else {
            stale_ = true;
        }
    }
}

void Receiver::readKey(const xcb_key_press_event_t& key) {
    if (stale_) readKeymapAgain();
    appendText(texts_.byNotifications, byNotifications_.get(), key.detail);
    xkb_state_update_mask(byEvents_.get(), key.state & realModifiers, 0, 0, 0, 0, key.state >> groupShift & groupBits);
    appendText(texts_.byEvents, byEvents_.get(), key.detail);
}

void Receiver::readKeymapAgain() {
    stale_ = false;
    keymap_ = coreKeymap(server_);
    if (!keymap_) return;
    XkbState before = std::move(byNotifications_);
    byNotifications_ = before ? XkbState(xkb_state_new(keymap_.get())) : coreState(server_, keymap_);
    byEvents_ = XkbState(xkb_state_new(keymap_.get()));
    // What is held and locked outlives a change of the keymap.
    if (before)
        xkb_state_update_mask(byNotifications_.get(), xkb_state_serialize_mods(before.get(), XKB_STATE_MODS_DEPRESSED),
                              xkb_state_serialize_mods(before.get(), XKB_STATE_MODS_LATCHED),
                              xkb_state_serialize_mods(before.get(), XKB_STATE_MODS_LOCKED),
                              xkb_state_serialize_layout(before.get(), XKB_STATE_LAYOUT_DEPRESSED),
                              xkb_state_serialize_layout(before.get(), XKB_STATE_LAYOUT_LATCHED),
                              xkb_state_serialize_layout(before.get(), XKB_STATE_LAYOUT_LOCKED));
}

void Receiver::roundTrip() {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(server_.get(), xcb_get_input_focus(server_.get()), nullptr));
}

}  // namespace vantor::sweep
