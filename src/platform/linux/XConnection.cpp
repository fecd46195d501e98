#include "platform/linux/XConnection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <cstdlib>
#include <utility>

namespace vantor {

void FreeDeleter::operator()(void* memory) const { std::free(memory); }

namespace {

// Null where no server answers.
xcb_connection_t* connect(int& screen) {
    xcb_connection_t* connection = xcb_connect(nullptr, &screen);
    if (!xcb_connection_has_error(connection)) return connection;
    xcb_disconnect(connection);
    return nullptr;
}

}  // namespace

XConnection::XConnection() {
    int screen = 0;
    connection_ = connect(screen);
    if (connection_) examine(screen);
}

XConnection::~XConnection() {
    if (connection_) xcb_disconnect(connection_);
}

bool XConnection::renew() {
    if (!isLost()) return connection_ != nullptr;
    int screen = 0;
    auto* fresh = connect(screen);
    if (!fresh) return false;
    const std::unique_ptr<xcb_connection_t, Disconnect> old(std::exchange(connection_, fresh));
    examine(screen);
    const auto handlers = renewalHandlers_;  // a handler may end its subscription
    for (const auto& [number, handler] : handlers) handler();
    return true;
}

Subscription XConnection::onRenewal(std::function<void()> handler) {
    const int number = next_++;
    renewalHandlers_.emplace(number, std::move(handler));
    return Subscription([this, number] { renewalHandlers_.erase(number); });
}

void XConnection::examine(int screen) {
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    while (screen-- > 0) xcb_screen_next(&roots);
    root_ = roots.data->root;

    const auto* test = xcb_get_extension_data(connection_, &xcb_test_id);
    hasTest_ = test && test->present;

    // Raw events reach a client without the focus from version 2.1 on.
    const auto* input = xcb_get_extension_data(connection_, &xcb_input_id);
    if (input && input->present) {
        const XReply<xcb_input_xi_query_version_reply_t> version(
            xcb_input_xi_query_version_reply(connection_, xcb_input_xi_query_version(connection_, 2, 2), nullptr));
        if (version && (version->major_version > 2 || version->minor_version >= 1)) inputOpcode_ = input->major_opcode;
    }

    xkb_x11_setup_xkb_extension(connection_, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &keyboardEventBase_, nullptr);
}

}  // namespace vantor
