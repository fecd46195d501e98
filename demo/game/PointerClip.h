#pragma once
// Holds the pointer as Wine does for a window that has the focus and covers the screen: confined to an unseen window of
// its own, and no other program is given a click. Main thread.

#include <xcb/xcb.h>

#include <QtCore/QSize>
#include <QtCore/QTimer>

namespace game {

class PointerClip {
public:
    PointerClip();
    void hold(QSize screen);
    void release();

private:
    void grab();

    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_window_t clip_ = XCB_NONE;
    QTimer again_;  // a button that is down, or a window manager's switcher, may hold the pointer at first
};

}  // namespace game
