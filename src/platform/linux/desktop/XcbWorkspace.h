#pragma once
// The frontmost application of an X11 desktop, by the root window's _NET_ACTIVE_WINDOW, on a connection of its own.
// Main thread.

#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <cstdint>
#include <memory>

#include "base/ObserverList.h"
#include "platform/OverlayWindows.h"
#include "platform/Workspace.h"
#include "platform/linux/desktop/XcbDesktop.h"

namespace vantor {

class XcbWorkspace final : public Workspace {
public:
    // Called at once and then whenever another application's window becomes active; the last such window stays the
    // answer while a window of ours is active.
    using FrontmostWindowHandler = std::function<void(NativeWindow window)>;

    // Windows of this process are our own.
    XcbWorkspace(std::unique_ptr<XcbDesktop> desktop, DesktopEntryLookup entries, std::uint32_t ownProcess);
    XcbWorkspace(const XcbWorkspace&) = delete;
    XcbWorkspace& operator=(const XcbWorkspace&) = delete;
    ~XcbWorkspace() override;

    Subscription observeFrontmostApplication(FrontmostHandler handler) override;
    Subscription observeFrontmostWindow(FrontmostWindowHandler handler);
    [[nodiscard]] std::optional<std::string> displayName(const std::string& identifier) const override;
    void hideAndUnhideWithoutActivation() override;
    [[nodiscard]] PointerHold pointerHold() const override;

private:
    void drain();
    void refresh();
    void follow(xcb_window_t window);
    void report(const std::string& identifier);
    [[nodiscard]] bool isManaged() const;
    // Itself, or a window inside it.
    [[nodiscard]] bool isFocused(xcb_window_t window) const;
    [[nodiscard]] bool isOwn(xcb_window_t window) const;
    [[nodiscard]] bool refusesFocus(xcb_window_t window) const;
    // A desktop's panel, with the status bar in it.
    [[nodiscard]] bool isPanel(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t windowToGiveTheFocus() const;

    std::unique_ptr<XcbDesktop> desktop_;
    DesktopEntryLookup entries_;
    std::uint32_t ownProcess_;
    QSocketNotifier readable_;
    QTimer noneLasts_;
    xcb_window_t active_ = XCB_NONE;
    xcb_window_t lastOther_ = XCB_NONE;
    std::string frontmost_;
    ObserverList<FrontmostHandler> handlers_;
    ObserverList<FrontmostWindowHandler> windowHandlers_;
};

}  // namespace vantor
