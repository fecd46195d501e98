#include "platform/linux/XConnection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <cstdlib>

namespace vantor {

void FreeDeleter::operator()(void* memory) const { std::free(memory); }

XConnection::XConnection() {
    int screen = 0;
    connection_ = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection_)) {
        xcb_disconnect(connection_);
        connection_ = nullptr;
        return;
    }
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

XConnection::~XConnection() {
    if (connection_) xcb_disconnect(connection_);
}

}  // namespace vantor
