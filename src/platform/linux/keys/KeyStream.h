#pragma once
// The server's stream of raw keys, whoever has the focus, turned into key events: the flags are those of the stream
// itself, and keys that Vantor posted are marked. Main thread.

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/Keys.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/keys/PostedKeyRecord.h"
#include "platform/linux/keys/TrackedKeyboard.h"

namespace vantor {

struct StreamedKey {
    std::uint8_t xKeycode = 0;
    bool down = false;
    std::uint32_t time = 0;  // the server's, milliseconds; the same as in the event that a focused window gets
    bool ownPost = false;
    // One of the windows that the focus is followed of had it when the key moved, and was given the key.
    bool toOwnWindow = false;
    std::optional<KeyEvent> event;  // nothing for a key without a virtual key code, and for an own post
};

class KeyStream {
public:
    // The references outlive the stream. Without raw events it stays silent.
    KeyStream(const XConnection& connection, PostedKeyRecord& record);

    [[nodiscard]] bool available() const { return connection_.hasRawKeys() && !connection_.isLost(); }
    // From now on, as long as the window exists.
    void followFocusOf(xcb_window_t window);
    // After a renewal of the connection: listens again, and knows no more of the keys than the server does.
    void restart();
    // Handles what the server sent so far. Does not wait.
    void poll(const std::function<void(const StreamedKey&)>& handler);
    // Whether an event has been read from the socket and waits; nothing else tells. Asks nobody.
    [[nodiscard]] bool readAhead();
    // The same for everything that the server did until this call, which takes one round trip.
    void pollToNow(const std::function<void(const StreamedKey&)>& handler);

    // The key event that a key makes now, with the flags of the stream.
    [[nodiscard]] std::optional<KeyEvent> eventFor(std::uint8_t xKeycode, bool down);

private:
    void select();
    void takeKeyboard();
    [[nodiscard]] XReply<xcb_generic_event_t> next();
    void handleKey(std::uint8_t xKeycode, bool down, std::uint32_t time,
                   const std::function<void(const StreamedKey&)>& handler);
    // Of a player's key: the flags of a release are those of its press, so that a combination is the same whichever of
    // its keys goes up first.
    [[nodiscard]] std::optional<KeyEvent> playersEvent(std::uint8_t xKeycode, bool down, std::uint32_t time);
    void handleFocus(const xcb_focus_in_event_t& event, bool in);
    void handleKeyboardNotice(const xcb_generic_event_t& event);

    const XConnection& connection_;
    PostedKeyRecord& record_;
    XReply<xcb_generic_event_t> ahead_;        // the first of those read ahead
    std::optional<TrackedKeyboard> keyboard_;  // from the first key on
    struct Press {
        ModifierFlags flags = 0;
        std::uint32_t time = 0;
    };
    std::array<std::optional<Press>, 256> presses_;  // of the player's keys that are down
    std::bitset<256> ownKeys_;                       // of Vantor's posts, those that are down
    xcb_window_t focused_ = XCB_NONE;                // of those that are followed
    bool stale_ = false;                             // the keymap has changed since
};

}  // namespace vantor
