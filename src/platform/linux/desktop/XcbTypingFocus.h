#pragma once
// Which window of an X11 desktop the keyboard goes to, asked on a connection of its own: one or two round trips before
// each key. A connection that the server ended is renewed at the next text. Made on the main thread, then the typing
// thread's.

#include <cstdint>
#include <memory>

#include "platform/TypingFocus.h"
#include "platform/linux/desktop/XcbDesktop.h"

namespace vantor {

class XcbTypingFocus final : public TypingFocus {
public:
    // Windows of this process are our own.
    XcbTypingFocus(std::unique_ptr<XcbDesktop> desktop, std::uint32_t ownProcess)
        : desktop_(std::move(desktop)), ownProcess_(ownProcess) {}

    [[nodiscard]] bool awaitOther(std::chrono::milliseconds atMost) override;
    // The same while the focus moves between windows inside the one that the window manager knows. Both not while
    // another client has taken the keyboard for itself: a menu, a switcher of windows, a locked screen.
    [[nodiscard]] bool isKept() override;

private:
    [[nodiscard]] bool isOwn(xcb_window_t window) const;
    [[nodiscard]] bool somebodyTakesIt() const;
    // Whether it still counts a window of ours that is hidden already.
    [[nodiscard]] bool managerIsBehind() const;
    [[nodiscard]] bool hasReturned(bool toSomebody) const;
    void lookAtFocus();

    std::unique_ptr<XcbDesktop> desktop_;
    std::uint32_t ownProcess_;
    xcb_window_t focused_ = XCB_NONE;
    xcb_window_t client_ = XCB_NONE;  // that the focused one belongs to
};

}  // namespace vantor
