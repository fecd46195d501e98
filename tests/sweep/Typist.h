#pragma once
// Vantor's typing as the program wires it, but on the caller's thread and with the focus left where it is. Learns the
// key map from the keymap and the group in force. Main thread.

#include "base/AtOnce.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeWorkspace.h"
#include "input/ClipboardManager.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor::sweep {

struct Typist {
    explicit Typist(Pause& pause)
        : clipboard({.typist = {layout, poster, workspace, pause},
                     .monitors = monitors,
                     .workspace = workspace,
                     .typingThread = here,
                     .mainThread = after}) {}

    // Waits until the server has done what was posted, as it has long before the next key at the real pace.
    void settle() const {
        const auto reply =
            owned(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    }

    XConnection connection;
    XkbKeyboardLayout layout{connection};
    PostedKeyRecord record;
    XTestKeyPoster poster{connection, record, layout, {}};
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    TaskQueueAtOnce here;
    MainThreadAtOnce after;
    ClipboardManager clipboard;
};

}  // namespace vantor::sweep
