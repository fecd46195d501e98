#pragma once
// An X server inside a window of another. What is typed in the outer one comes out of the inner one's own keyboard: a
// device beside that of the test extension. Owns the process and the window. Main thread.

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QProcess>
#include <bitset>
#include <optional>
#include <string_view>

#include "platform/linux/XConnection.h"

namespace vantor::sweep {

class NestedServer {
public:
    // Connects to the server that DISPLAY names, the outer one, and names the inner one there.
    NestedServer() {
        if (clearMeanings() && start()) findKeyboard();
    }
    ~NestedServer() {
        process_.terminate();
        if (!process_.waitForFinished(5000)) process_.kill();
        process_.waitForFinished(5000);
    }
    NestedServer(const NestedServer&) = delete;
    NestedServer& operator=(const NestedServer&) = delete;

    [[nodiscard]] bool runs() const { return keyboard_ != 0; }
    // With a key of the outer keyboard. False when the inner server does not show it within seconds.
    [[nodiscard]] bool press(std::uint8_t xKeycode, bool down) {
        xcb_test_fake_input(outer_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME,
                            outer_.root(), 0, 0, 0);
        roundTrip();
        const QDeadlineTimer deadline(30000);
        while (keysDown()[xKeycode] != down)
            if (deadline.hasExpired()) return false;
        return true;
    }
    // The keys that are down on that keyboard; the core keyboard's are those of all devices together.
    [[nodiscard]] std::bitset<256> keysDown() const {
        std::bitset<256> down;
        const auto asked = xcb_input_query_device_state(inner_->get(), keyboard_);
        const auto state = owned(xcb_input_query_device_state_reply(inner_->get(), asked, nullptr));
        if (!state) return down;
        for (auto each = xcb_input_query_device_state_classes_iterator(state.get()); each.rem > 0;
             xcb_input_input_state_next(&each)) {
            if (each.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
            const auto& keys = reinterpret_cast<const xcb_input_key_state_t&>(*each.data);
            for (std::size_t key = 0; key < down.size(); ++key) down[key] = keys.keys[key / 8] >> key % 8 & 1;
        }
        return down;
    }

private:
    [[nodiscard]] bool clearMeanings() {
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
        if (!compiler.waitForFinished(60000) || compiler.exitCode() != 0) return false;
        // A key that is a modifier inside may be a letter outside, and would be pressed again and again.
        const std::uint32_t off = XCB_AUTO_REPEAT_MODE_OFF;
        xcb_change_keyboard_control(outer_.get(), XCB_KB_AUTO_REPEAT_MODE, &off);
        return true;
    }
    [[nodiscard]] bool start() {
        // Past the window manager, so that nobody but us moves the focus.
        frame_ = xcb_generate_id(outer_.get());
        const std::uint32_t unmanaged = 1;
        xcb_create_window(outer_.get(), XCB_COPY_FROM_PARENT, frame_, outer_.root(), 0, 0, 320, 240, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        xcb_map_window(outer_.get(), frame_);
        roundTrip();

        // The keymap compiler's warnings land there; an unread pipe would fill and stop the server.
        process_.setStandardErrorFile(QProcess::nullDevice());
        process_.start(QStringLiteral("Xephyr"),
                       QStringLiteral("-displayfd 1 -parent %1 -screen 320x240 -noreset -nolisten tcp")
                           .arg(frame_)
                           .split(QLatin1Char(' ')));
        const QDeadlineTimer deadline(60000);
        while (!process_.canReadLine())
            if (!process_.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) return false;

        const auto tree = owned(xcb_query_tree_reply(outer_.get(), xcb_query_tree(outer_.get(), frame_), nullptr));
        if (!tree || xcb_query_tree_children_length(tree.get()) == 0) return false;
        xcb_set_input_focus(outer_.get(), XCB_INPUT_FOCUS_PARENT, *xcb_query_tree_children(tree.get()),
                            XCB_CURRENT_TIME);
        roundTrip();
        qputenv("DISPLAY", ':' + process_.readLine().trimmed());
        return true;
    }
    void findKeyboard() {
        inner_.emplace();
        if (!inner_->hasRawKeys()) return;
        const auto asked = xcb_input_xi_query_device(inner_->get(), XCB_INPUT_DEVICE_ALL);
        const auto devices = owned(xcb_input_xi_query_device_reply(inner_->get(), asked, nullptr));
        for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem > 0;
             xcb_input_xi_device_info_next(&each)) {
            const std::string_view name(xcb_input_xi_device_info_name(each.data),
                                        static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
            if (each.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD && name.starts_with("Xephyr"))
                keyboard_ = static_cast<std::uint8_t>(each.data->deviceid);
        }
        const auto opened =
            owned(xcb_input_open_device_reply(inner_->get(), xcb_input_open_device(inner_->get(), keyboard_), nullptr));
    }
    void roundTrip() {
        const auto reply = owned(xcb_get_input_focus_reply(outer_.get(), xcb_get_input_focus(outer_.get()), nullptr));
    }

    XConnection outer_;
    xcb_window_t frame_ = XCB_NONE;
    QProcess process_;
    std::optional<XConnection> inner_;
    std::uint8_t keyboard_ = 0;  // the device
};

}  // namespace vantor::sweep
