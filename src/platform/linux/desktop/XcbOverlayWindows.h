#pragma once
// Makes toolkit windows float over a game on X11: no focus when they are mapped, above the rest, kept out of the task
// bar, and transient for the game's window, since a focused full-screen window lies above even those that are "above".
// On a connection of its own. Main thread.

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QSocketNotifier>
#include <QtGui/QWindow>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>

#include "platform/OverlayWindows.h"
#include "platform/linux/desktop/XcbDesktop.h"

namespace vantor {

class XcbOverlayWindows final : public OverlayWindows, private QAbstractNativeEventFilter {
public:
    explicit XcbOverlayWindows(std::unique_ptr<XcbDesktop> desktop);
    XcbOverlayWindows(const XcbOverlayWindows&) = delete;
    XcbOverlayWindows& operator=(const XcbOverlayWindows&) = delete;
    ~XcbOverlayWindows() override;

    // Once for each window; what the window manager forgets when a window is hidden is given again.
    void prepare(NativeWindow window, WindowNature nature) override;
    // X keeps none.
    [[nodiscard]] bool keepFrame(NativeWindow, const std::string&) override { return false; }
    // Mapping and raising are all that there is to it.
    void orderFront(NativeWindow) override {}
    void takeFocus(NativeWindow window) override;
    // The game's window that ours lie over; 0 for none.
    void setOwnerWindow(NativeWindow owner);
    // Whether a compositor blends them: told at once and at each change.
    void followBlending(std::function<void(bool blends)> handler);

private:
    // What the toolkit is not to hear.
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void drain();
    void mapped(xcb_window_t window);
    void unmapped(xcb_window_t window);
    void destroyed(xcb_window_t window);
    void requestPlace(xcb_window_t window) const;
    void writeHints(xcb_window_t window, WindowNature nature) const;
    [[nodiscard]] QWindow* ownerOf(WindowNature nature) const;
    void writeOwner(xcb_window_t window, WindowNature nature) const;

    std::unique_ptr<XcbDesktop> desktop_;
    QSocketNotifier readable_;
    std::map<xcb_window_t, WindowNature> prepared_;
    std::set<xcb_window_t> standing_;  // shown, and brought to their places
    std::function<void(bool blends)> blending_;
    std::uint8_t selectionNotice_ = 0;  // the event's number; 0 where the server tells of none
    // The game's window as the toolkit sees it: another client's, which is only named.
    std::unique_ptr<QWindow> owner_;
};

}  // namespace vantor
