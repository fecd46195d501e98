#pragma once
// Vantor's own connection to the X server for keys, beside the toolkit's, and what the server offers on it. The server
// may end it, as it does at another client's request; it can be renewed then. Main thread.

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "base/Subscription.h"

namespace vantor {

class XConnection {
public:
    enum class Verdict { connected, noDisplay };

    // The display that DISPLAY names. Without one everything else here answers "no".
    XConnection();
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] Verdict verdict() const { return connection_ ? Verdict::connected : Verdict::noDisplay; }
    [[nodiscard]] xcb_connection_t* get() const { return connection_; }  // null without a display
    [[nodiscard]] xcb_window_t root() const { return root_; }

    // Whether it was there and is no more. What is asked of it then has no answer and does no harm.
    [[nodiscard]] bool isLost() const { return connection_ && xcb_connection_has_error(connection_) != 0; }
    // Connects again if it is lost. False where no server answers: it stays lost. What was made or selected on the old
    // connection is gone with it, so who has such a thing has to be told.
    bool renew();
    // Called after a renewal, while the old connection's descriptor is still open.
    [[nodiscard]] Subscription onRenewal(std::function<void()> handler);

    [[nodiscard]] bool hasTest() const { return hasTest_; }
    [[nodiscard]] bool hasRawKeys() const { return inputOpcode_ != 0; }
    [[nodiscard]] bool hasKeyboard() const { return keyboardEventBase_ != 0; }
    [[nodiscard]] std::uint8_t inputOpcode() const { return inputOpcode_; }              // of XInput2 events
    [[nodiscard]] std::uint8_t keyboardEventBase() const { return keyboardEventBase_; }  // of XKB events

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    void examine(int screen);

    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = 0;
    bool hasTest_ = false;
    std::uint8_t inputOpcode_ = 0;
    std::uint8_t keyboardEventBase_ = 0;
    int next_ = 0;
    std::map<int, std::function<void()>> renewalHandlers_;
};

// A reply or event that xcb hands over to be freed.
struct FreeDeleter {
    void operator()(void* memory) const;
};
template <typename T>
using XReply = std::unique_ptr<T, FreeDeleter>;

}  // namespace vantor
