#pragma once
// Vantor's own connection to the X server for keys, beside the toolkit's, and what the server offers on it. Main
// thread.

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>

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

    [[nodiscard]] bool hasTest() const { return hasTest_; }
    [[nodiscard]] bool hasRawKeys() const { return inputOpcode_ != 0; }
    [[nodiscard]] bool hasKeyboard() const { return keyboardEventBase_ != 0; }
    [[nodiscard]] std::uint8_t inputOpcode() const { return inputOpcode_; }              // of XInput2 events
    [[nodiscard]] std::uint8_t keyboardEventBase() const { return keyboardEventBase_; }  // of XKB events

private:
    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = 0;
    bool hasTest_ = false;
    std::uint8_t inputOpcode_ = 0;
    std::uint8_t keyboardEventBase_ = 0;
};

// A reply or event that xcb hands over to be freed.
struct FreeDeleter {
    void operator()(void* memory) const;
};
template <typename T>
using XReply = std::unique_ptr<T, FreeDeleter>;

}  // namespace vantor
