#pragma once
// A connection of Vantor's own to the X server, beside the toolkit's, and what the server offers on it. The server may
// end it, as it does at another client's request; it can be renewed then. One thread.

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Notice.h"
#include "platform/linux/XReply.h"

namespace vantor {

class XConnection {
public:
    enum class Verdict { connected, noDisplay };
    // When the extensions are asked for, before which none may be used: with the connection, or at the first question
    // about them, for whoever needs none.
    enum class Extensions { now, later };

    // Null means the display that DISPLAY names. Without one everything else here answers "no".
    explicit XConnection(const char* displayName = nullptr, Extensions extensions = Extensions::now);
    ~XConnection() = default;
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] Verdict verdict() const { return connection_ ? Verdict::connected : Verdict::noDisplay; }
    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }  // null without a display
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] int screen() const { return screen_; }

    // Whether it was there and is no more. What is asked of it then has no answer and does no harm.
    [[nodiscard]] bool isLost() const { return connection_ && xcb_connection_has_error(connection_.get()) != 0; }
    // Connects again if it is lost. False where no server answers: it stays lost. What was made or selected on the old
    // connection is gone with it, so who has such a thing has to be told.
    bool renew();
    // Called after a renewal, while the old connection's descriptor is still open.
    [[nodiscard]] Subscription onRenewal(std::function<void()> handler);

    [[nodiscard]] bool hasTest() const { return known().test; }
    [[nodiscard]] bool hasRawKeys() const { return inputOpcode() != 0; }
    [[nodiscard]] bool hasKeyboard() const { return keyboardEventBase() != 0; }
    // XCB_INPUT_XI_EVENT_MASK_RAW_KEY_..., zero for none, in place of what was selected before. Each event comes once
    // whichever keyboard it was made on. Without raw keys it does nothing.
    void selectRawKeys(std::uint32_t events) const;
    [[nodiscard]] std::uint8_t inputOpcode() const { return known().inputOpcode; }              // of XInput2 events
    [[nodiscard]] std::uint8_t keyboardEventBase() const { return known().keyboardEventBase; }  // of XKB events

private:
    struct Known {
        bool test = false;
        std::uint8_t inputOpcode = 0;
        std::uint8_t keyboardEventBase = 0;
    };
    void connect();
    const Known& known() const;

    std::string displayName_;
    Extensions extensions_;
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_NONE;
    int screen_ = 0;
    mutable std::optional<Known> known_;
    Notice renewed_;
};

}  // namespace vantor
