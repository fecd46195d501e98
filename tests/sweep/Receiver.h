#pragma once
// A client with the keyboard focus that reads its keys in the two ways in which clients do, and writes down the text.
// One thread.

#include <cstdint>
#include <string>

#include "platform/linux/XConnection.h"
#include "platform/linux/keys/XkbHandles.h"

namespace vantor::sweep {

class Receiver {
public:
    struct Texts {
        std::string byNotifications;  // modifiers and group from the server's notices of them: today's toolkits
        std::string byEvents;         // modifiers and group out of each key event: older ones and most games

        bool operator==(const Texts&) const = default;
    };

    // A window in the server that DISPLAY names; it takes the focus.
    Receiver();

    [[nodiscard]] xcb_window_t window() const { return window_; }
    // What is already here. Never waits, so that it can be called while the other side types.
    void drain();
    // Everything that the server has sent until now, since the last call.
    [[nodiscard]] Texts take();

private:
    void handle(const xcb_generic_event_t& event);
    void readKey(const xcb_key_press_event_t& key);
    void readKeymapAgain();
    void roundTrip();

    XConnection server_;
    xcb_window_t window_ = XCB_NONE;
    XkbKeymap keymap_;
    XkbState byNotifications_;
    XkbState byEvents_;
    bool stale_ = true;
    Texts texts_;
};

}  // namespace vantor::sweep
