#include "platform/linux/desktop/XcbTypingFocus.h"

#include <algorithm>
#include <thread>

namespace vantor {
namespace {

constexpr std::chrono::milliseconds lookAgainAfter{2};
// For a window manager that has not come to a window that we have hidden.
constexpr std::chrono::seconds managerPatience{2};

}  // namespace

bool XcbTypingFocus::awaitOther(std::chrono::milliseconds atMost) {
    const auto began = std::chrono::steady_clock::now();
    auto deadline = began + atMost;
    const auto comesTrue = [&](const auto& condition) {
        while (!condition()) {
            const auto now = std::chrono::steady_clock::now();
            // Nobody can have the focus before the manager has seen that our window is gone.
            if (now < began + managerPatience && managerIsBehind()) deadline = now + atMost;
            if (now >= deadline || desktop_->server().isLost()) return false;
            std::this_thread::sleep_for(lookAgainAfter);
        }
        return true;
    };
    if (desktop_->server().isLost())
        if (auto again = XcbDesktop::connect()) desktop_ = std::move(again);
    if (!comesTrue([this, toSomebody = somebodyTakesIt()] { return hasReturned(toSomebody); })) return false;
    // The menu that this was chosen from may still be closing. What stays may be a locked screen: nobody says who it
    // is.
    if (!comesTrue([this] { return !desktop_->othersHoldKeyboard(); })) return false;
    lookAtFocus();
    return !desktop_->server().isLost() && !isOwn(client_);
}

void XcbTypingFocus::lookAtFocus() {
    focused_ = desktop_->focusedWindow();
    client_ = desktop_->clientWindow(focused_);
}

bool XcbTypingFocus::isKept() {
    if (desktop_->server().isLost()) return false;
    if (const auto focused = desktop_->focusedWindow(); focused != focused_) {
        const auto client = desktop_->clientWindow(focused);
        if (client == XCB_NONE || client != client_) return false;
        focused_ = focused;
    }
    return !desktop_->othersHoldKeyboard();
}

bool XcbTypingFocus::isOwn(xcb_window_t window) const {
    // 1 is the pointer root, no window.
    return window > XCB_INPUT_FOCUS_POINTER_ROOT && desktop_->process(window) == ownProcess_;
}

bool XcbTypingFocus::somebodyTakesIt() const {
    if (!desktop_->managerSupports(desktop_->atoms().netActiveWindow)) return false;
    const auto windows = desktop_->clientsFromTop();
    return std::any_of(windows.begin(), windows.end(),
                       [this](xcb_window_t window) { return !isOwn(window) && desktop_->isViewable(window); });
}

bool XcbTypingFocus::managerIsBehind() const {
    const auto windows = desktop_->clientsFromTop();
    return std::ranges::any_of(windows,
                               [this](xcb_window_t window) { return isOwn(window) && desktop_->isUnmapped(window); });
}

// The server's focus decides where keys go. While the manager moves it, it may be nobody's, or the application's that
// has not been told yet: keys would be lost until the manager names the one that has it.
bool XcbTypingFocus::hasReturned(bool toSomebody) const {
    const auto active = desktop_->activeWindow();
    const auto client = desktop_->clientWindow(desktop_->focusedWindow());
    if (toSomebody) return active != XCB_NONE && !isOwn(active) && client == active;
    return !isOwn(active) && !isOwn(client);
}

}  // namespace vantor
