#pragma once
// Vantor's typing as the program wires it, on the display that DISPLAY names: real layout, real poster, real
// ClipboardManager. Only the focus is left where it is, and the pauses may be shorter. Main thread.

#include <chrono>
#include <functional>

#include "base/AtOnce.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeWorkspace.h"
#include "input/ClipboardManager.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "sweep/Receiver.h"

namespace vantor::sweep {

// Lets the receiver read on while Vantor types, and a test act; waits as long as it is told to rather than what it is
// asked for.
class DrainingPause final : public Pause {
public:
    // Without a pace: no wait.
    DrainingPause(Receiver& receiver, std::chrono::microseconds pace) : receiver_(receiver), pace_(pace) {}
    void wait(std::chrono::microseconds duration) override;

    std::function<void()> act;

private:
    Receiver& receiver_;
    std::chrono::microseconds pace_;
    unsigned waits_ = 0;
};

class Typist {
public:
    // Learns the key map from the keymap and the group in force.
    explicit Typist(Pause& pause)
        : clipboard_({.typist = {layout_, poster_, workspace_, pause},
                      .monitors = monitors_,
                      .workspace = workspace_,
                      .typingThread = here_,
                      .mainThread = after_}) {}

    [[nodiscard]] const KeyMap& keyMap() const { return clipboard_.keyMap(); }
    [[nodiscard]] ClipboardManager& clipboard() { return clipboard_; }
    // Returns when the server has everything.
    void type(const std::string& text);
    // Waits until the server has done what was posted, as it has long before the next key at the real pace.
    void settle();

private:
    XConnection connection_;
    XkbKeyboardLayout layout_{connection_};
    PostedKeyRecord record_;
    XTestKeyPoster poster_{connection_, record_, layout_, {}};
    FakeKeyMonitors monitors_;
    FakeWorkspace workspace_;
    TaskQueueAtOnce here_;
    MainThreadAtOnce after_;
    ClipboardManager clipboard_;
};

}  // namespace vantor::sweep
