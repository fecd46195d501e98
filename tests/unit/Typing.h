#pragma once
// Everything that types and presses, on a desktop that writes down what it is told.

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
    ClipboardManager manager{layout, poster, monitors, workspace, pause};
};

}  // namespace vantor
