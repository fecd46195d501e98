#include "platform/linux/XConnection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <utility>

namespace vantor {

XConnection::XConnection(const char* displayName, Extensions extensions)
    : displayName_(displayName ? displayName : ""), extensions_(extensions) {
    connect();
}

void XConnection::connect() {
    connection_.reset(xcb_connect(displayName_.empty() ? nullptr : displayName_.c_str(), &screen_));
    if (xcb_connection_has_error(connection_.get())) return connection_.reset();
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (int skipped = 0; skipped < screen_ && roots.rem > 1; ++skipped) xcb_screen_next(&roots);
    root_ = roots.data->root;
    known_.reset();
    if (extensions_ == Extensions::now) static_cast<void>(known());
}

bool XConnection::renew() {
    if (!isLost()) return connection_ != nullptr;
    auto old = std::move(connection_);
    connect();
    if (!connection_) {
        connection_ = std::move(old);
        return false;
    }
    renewed_.announce();
    return true;
}

Subscription XConnection::onRenewal(std::function<void()> handler) { return renewed_.observe(std::move(handler)); }

const XConnection::Known& XConnection::known() const {
    if (known_) return *known_;
    auto& found = known_.emplace(Known{});  // clang finds no emplace() for a nested class
    if (!connection_) return found;
    auto* const server = connection_.get();

    const auto* test = xcb_get_extension_data(server, &xcb_test_id);
    found.test = test && test->present;

    // Raw events reach a client without the focus from version 2.1 on.
    const auto* input = xcb_get_extension_data(server, &xcb_input_id);
    if (input && input->present) {
        const auto version =
            owned(xcb_input_xi_query_version_reply(server, xcb_input_xi_query_version(server, 2, 2), nullptr));
        if (version && (version->major_version > 2 || version->minor_version >= 1))
            found.inputOpcode = input->major_opcode;
    }

    xkb_x11_setup_xkb_extension(server, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &found.keyboardEventBase,
                                nullptr);
    return found;
}

void XConnection::selectRawKeys(std::uint32_t events) const {
    if (!hasRawKeys()) return;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } keys = {};
    // The master devices stand for every keyboard.
    keys.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    keys.head.mask_len = 1;
    keys.mask = events;
    xcb_input_xi_select_events(connection_.get(), root_, 1, &keys.head);
}

}  // namespace vantor
