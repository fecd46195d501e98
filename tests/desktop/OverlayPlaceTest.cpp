// Where an overlay window belongs, while a window manager is slow to take it into its frame.

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <vector>

#include "ComesTrue.h"
#include "WindowManager.h"
#include "platform/linux/desktop/XcbDesktop.h"
#include "ui/OverlayWindow.h"

namespace vantor {
namespace {

// Tells the window that it stands there, as a window manager does (ICCCM 4.1.5), and waits until the toolkit believes
// it.
bool claimPlace(const XcbDesktop& server, const QWidget& window, QPoint place) {
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_configure_notify_event_t told{};
    told.response_type = XCB_CONFIGURE_NOTIFY;
    told.event = id;
    told.window = id;
    told.x = static_cast<std::int16_t>(place.x());
    told.y = static_cast<std::int16_t>(place.y());
    told.width = static_cast<std::uint16_t>(window.width());
    told.height = static_cast<std::uint16_t>(window.height());
    xcb_send_event(server.connection(), 0, id, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char*>(&told));
    server.flush();
    return comesTrue([&] { return window.pos() == place; });
}

TEST(OverlayPlaceTest, APlaceOnTheWayToTheScreenIsNotRemembered) {
    const auto server = XcbDesktop::connect();
    std::vector<QRect> told;
    OverlayWindow window({.movable = true}, {});
    window.onPlaced([&](const QRect& frame) { told.push_back(frame); });
    const QRect belongs(500, 300, 250, 60);
    window.setGeometry(belongs);

    // Hidden before it was ever painted: what it heard in between was never its place.
    const WindowManager manager;
    manager.halt();
    window.orderFront();
    ASSERT_TRUE(claimPlace(*server, window, {0, 0}));
    window.orderOut();
    EXPECT_TRUE(told.empty()) << told.front().x() << ", " << told.front().y();
    EXPECT_EQ(window.geometry(), belongs);

    // Shown and at rest, it is where the window manager puts it.
    manager.resume();
    window.orderFront();
    ASSERT_TRUE(comesTrue([&] { return window.windowHandle()->isExposed(); }));
    window.repaint();
    QApplication::processEvents();  // what the first picture led to
    ASSERT_TRUE(claimPlace(*server, window, {40, 50}));
    window.orderOut();
    EXPECT_EQ(told, std::vector{QRect(QPoint(40, 50), belongs.size())});
}

}  // namespace
}  // namespace vantor
