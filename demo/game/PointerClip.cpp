#include "PointerClip.h"

#include <QtGui/QGuiApplication>
#include <chrono>
#include <cstdlib>
#include <memory>

namespace game {

PointerClip::PointerClip()
    : connection_(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection()),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root) {
    again_.setInterval(std::chrono::milliseconds(20));
    QObject::connect(&again_, &QTimer::timeout, [this] { grab(); });
}

void PointerClip::hold(QSize screen) {
    if (clip_ != XCB_NONE) return;
    clip_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, clip_, root_, 0, 0, static_cast<std::uint16_t>(screen.width()),
                      static_cast<std::uint16_t>(screen.height()), 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT, std::data({std::uint32_t{1}}));
    // Below the rest: it confines, and takes no click.
    xcb_configure_window(connection_, clip_, XCB_CONFIG_WINDOW_STACK_MODE,
                         std::data({std::uint32_t{XCB_STACK_MODE_BELOW}}));
    xcb_map_window(connection_, clip_);
    grab();
}

void PointerClip::release() {
    again_.stop();
    if (clip_ == XCB_NONE) return;
    xcb_ungrab_pointer(connection_, XCB_CURRENT_TIME);
    xcb_destroy_window(connection_, clip_);
    xcb_flush(connection_);
    clip_ = XCB_NONE;
}

void PointerClip::grab() {
    constexpr std::uint16_t events =
        XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;
    const auto cookie = xcb_grab_pointer(connection_, 1, clip_, events, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, clip_,
                                         XCB_NONE, XCB_CURRENT_TIME);
    const std::unique_ptr<xcb_grab_pointer_reply_t, decltype(&std::free)> reply(
        xcb_grab_pointer_reply(connection_, cookie, nullptr), &std::free);
    if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS)
        again_.stop();
    else
        again_.start();
}

}  // namespace game
