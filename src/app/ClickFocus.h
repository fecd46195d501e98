#pragma once
// Gives the open main window the focus where another client holds the pointer, since no click would reach it: a
// full-screen game under Wine does so while it has the focus. Main thread.

#include <functional>
#include <memory>
#include <utility>

#include "base/Scheduler.h"
#include "platform/Workspace.h"

namespace vantor {

class ClickFocus {
public:
    struct Needs {
        Workspace& workspace;
        Scheduler& scheduler;
        // Whether the main window is open over an application whose focus it may take now.
        std::function<bool()> wanted;
        std::function<void()> take;
    };

    explicit ClickFocus(Needs needs) : needs_(std::move(needs)) {}

    // Both look in a tenth of a second, and on for a second: a game reads the keys that it was given before, and holds
    // the pointer only some time after it has got the focus.
    void windowChanged();
    // The focus has gone to another application. One that has held the pointer since the opening will do so again, at
    // the next click into it at the latest.
    void frontmostChanged();

private:
    void watch();
    void look(int left);

    Needs needs_;
    bool wasHeld_ = false;
    // Of the last watch alone: a newer one takes its place.
    std::shared_ptr<const bool> current_;
};

}  // namespace vantor
