#pragma once
// Everything that types and presses, on a desktop that writes down what it is told.

#include "base/AtOnce.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakePause.h"
#include "fake/FakeWorkspace.h"
#include "input/ClipboardManager.h"

namespace vantor {

template <typename Layout>
struct Typing {
    // What the layout is made of.
    template <typename... Names>
    explicit Typing(const Names&... names) : layout(names...) {}
    void holdShift(bool held) {
        (void)monitors.pressInVantor({KeyEventType::flagsChanged, 56, held ? modifier::shift : 0, ""});
    }

    Layout layout;
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    TaskQueueAtOnce typingThread;
    MainThreadAtOnce typingMainThread;
    std::vector<std::string> said;
    ClipboardManager manager{{.typist = {layout, poster, workspace, pause},
                              .monitors = monitors,
                              .workspace = workspace,
                              .typingThread = typingThread,
                              .mainThread = typingMainThread,
                              .say = [this](const std::string& line) { said.push_back(line); }}};
};

}  // namespace vantor
