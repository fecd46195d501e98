#pragma once
// The desktop as Vantor sees it, and what is really so: which window is active, what lies over what. For a test's
// fixture to be made of.

#include <unistd.h>

#include <QtWidgets/QWidget>
#include <algorithm>
#include <memory>
#include <optional>

#include "StandInGame.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/desktop/XcbWorkspace.h"

namespace vantor {

struct Desktop {
    std::unique_ptr<XcbDesktop> server = XcbDesktop::connect();
    XcbWorkspace workspace{XcbDesktop::connect(), [](const std::string&) { return std::nullopt; },
                           static_cast<std::uint32_t>(::getpid())};
    XcbOverlayWindows overlays{XcbDesktop::connect()};

    static xcb_window_t idOf(const QWidget& window) { return static_cast<xcb_window_t>(window.winId()); }
    [[nodiscard]] bool isActive(xcb_window_t window) const {
        return server->activeWindow() == window && server->clientWindow(server->focusedWindow()) == window;
    }
    [[nodiscard]] bool isShownOver(const QWidget& window, const StandInGame& other) const {
        if (!server->isViewable(idOf(window))) return false;
        const auto order = server->clientsFromTop();
        const auto ours = std::find(order.begin(), order.end(), idOf(window));
        const auto theirs = std::find(order.begin(), order.end(), other.window());
        return ours < theirs && ours != order.end();
    }
};

}  // namespace vantor
