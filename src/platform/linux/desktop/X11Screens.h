#pragma once
// The screens as the toolkit knows them, and where the game's window stands on an X11 desktop: followed on a connection
// of its own. Main thread.

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

#include <memory>

#include "base/Notice.h"
#include "platform/OverlayWindows.h"
#include "platform/Screens.h"
#include "platform/linux/desktop/XcbDesktop.h"

namespace vantor {

class X11Screens final : public Screens {
public:
    explicit X11Screens(std::unique_ptr<XcbDesktop> desktop);
    X11Screens(const X11Screens&) = delete;
    X11Screens& operator=(const X11Screens&) = delete;
    ~X11Screens() override;

    [[nodiscard]] std::vector<Screen> all() const override;
    [[nodiscard]] std::optional<Rect> frontmostWindow() const override;
    Subscription observe(std::function<void()> handler) override { return changed_.observe(std::move(handler)); }
    // The other application's window in front; 0 for none.
    void setFrontmostWindow(NativeWindow window);

private:
    void drain();
    void look();
    void announceLater();

    std::unique_ptr<XcbDesktop> desktop_;
    QSocketNotifier readable_;
    xcb_window_t window_ = XCB_NONE;
    std::optional<Rect> place_;  // in the server's pixels
    Notice changed_;
    bool announcing_ = false;
    QObject connections_;  // to the toolkit end with it
};

}  // namespace vantor
