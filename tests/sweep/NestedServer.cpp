#include "sweep/NestedServer.h"

#include <xcb/xtest.h>

#include <QtCore/QDeadlineTimer>

namespace vantor::sweep {

NestedServer::NestedServer() {
    if (outer_.verdict() != XConnection::Verdict::connected) return;
    // Past the window manager, so that nobody but us moves the focus.
    frame_ = xcb_generate_id(outer_.get());
    const std::uint32_t unmanaged = 1;
    xcb_create_window(outer_.get(), XCB_COPY_FROM_PARENT, frame_, outer_.root(), 0, 0, 320, 240, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_map_window(outer_.get(), frame_);
    roundTrip();

    if (!clearMeanings()) return;

    // The keymap compiler's warnings land there; an unread pipe would fill and stop the server.
    process_.setStandardErrorFile(QProcess::nullDevice());
    process_.start(QStringLiteral("Xephyr"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-parent"),
                    QString::number(frame_), QStringLiteral("-screen"), QStringLiteral("320x240"),
                    QStringLiteral("-noreset"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    const QDeadlineTimer deadline(20000);
    while (!process_.canReadLine())
        if (deadline.hasExpired() || !process_.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) return;
    const QString number = QString::fromLatin1(process_.readLine()).trimmed();

    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(outer_.get(), xcb_query_tree(outer_.get(), frame_), nullptr));
    if (!tree || xcb_query_tree_children_length(tree.get()) == 0) return;
    xcb_set_input_focus(outer_.get(), XCB_INPUT_FOCUS_PARENT, *xcb_query_tree_children(tree.get()), XCB_CURRENT_TIME);
    roundTrip();
    display_ = QLatin1Char(':') + number;
}

NestedServer::~NestedServer() {
    process_.terminate();
    if (!process_.waitForFinished(5000)) process_.kill();
    process_.waitForFinished(5000);
}

bool NestedServer::clearMeanings() {
    // The inner server follows the outer one's modifiers at every key, and would press keys of its own for them.
    constexpr const char* keysWithoutModifiers = R"xkb(xkb_keymap {
        xkb_keycodes { include "evdev" };
        xkb_types { include "complete" };
        xkb_compat { interpret Any { action = NoAction(); }; };
        xkb_symbols { include "us(basic)" };
    };)xkb";
    QProcess compiler;
    compiler.start(QStringLiteral("xkbcomp"),
                   {QStringLiteral("-w0"), QStringLiteral("-"), qEnvironmentVariable("DISPLAY")});
    compiler.write(keysWithoutModifiers);
    compiler.closeWriteChannel();
    if (!compiler.waitForFinished(20000) || compiler.exitCode() != 0) return false;
    // A key that is a modifier inside may be a letter outside, and would be pressed again and again.
    const std::uint32_t off = XCB_AUTO_REPEAT_MODE_OFF;
    xcb_change_keyboard_control(outer_.get(), XCB_KB_AUTO_REPEAT_MODE, &off);
    roundTrip();
    return true;
}

void NestedServer::press(std::uint8_t xKeycode, bool down) {
    xcb_test_fake_input(outer_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME, outer_.root(),
                        0, 0, 0);
    roundTrip();
}

void NestedServer::roundTrip() {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(outer_.get(), xcb_get_input_focus(outer_.get()), nullptr));
}

}  // namespace vantor::sweep
