#pragma once
// Types texts and presses key combinations in the application that has the focus. Blocks while it posts. Main thread;
// one instance, made at start.

#include <string>
#include <vector>

#include "base/Subscription.h"
#include "input/KeyMap.h"
#include "platform/Clock.h"
#include "platform/KeyMonitors.h"
#include "platform/KeyPoster.h"
#include "platform/KeyboardLayout.h"
#include "platform/Workspace.h"

namespace vantor {

class ClipboardManager {
public:
    ClipboardManager(const KeyboardLayout& layout, KeyPoster& poster, KeyMonitors& monitors, Workspace& workspace,
                     Pause& pause);
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;

    // Returns the status text "typed in app", whatever arrived.
    std::string typeString(const std::string& text);
    void pressReadableKeys(const std::string& combination);

    // Whether a Shift key was held at the last change of modifiers that went to a window of ours.
    [[nodiscard]] bool shiftPressed() const { return shiftPressed_; }
    [[nodiscard]] const KeyMap& keyMap() const { return keyMap_; }

private:
    void handBackFocus();
    void post(const std::vector<PostedKey>& strokes);

    bool shiftPressed_ = false;
    KeyMap keyMap_;
    KeyPoster& poster_;
    Workspace& workspace_;
    Pause& pause_;
    Subscription shiftObserver_;
};

}  // namespace vantor
