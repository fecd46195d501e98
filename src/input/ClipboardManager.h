#pragma once
// Types texts and presses key combinations in the application that has the focus. Blocks while it posts. Main thread;
// one instance, made at start.

#include <cstddef>
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
    // What did not go out of a text or a combination.
    struct Missing {
        std::size_t unknown = 0;  // characters, or parts of a combination, that the layout has no key for
        bool lost = false;        // whether strokes could not be posted

        bool operator==(const Missing&) const = default;
    };

    ClipboardManager(KeyboardLayout& layout, KeyPoster& poster, KeyMonitors& monitors, Workspace& workspace,
                     Pause& pause);
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;

    // Returns the status text "typed in app", whatever arrived.
    std::string typeString(const std::string& text);
    Missing type(const std::string& text);
    Missing pressReadableKeys(const std::string& combination);

    // Whether a Shift key was held at the last change of modifiers that went to a window of ours.
    [[nodiscard]] bool shiftPressed() const { return shiftPressed_; }
    [[nodiscard]] const KeyMap& keyMap() const { return keyMap_; }

private:
    void prepare();
    // False where strokes were lost.
    bool post(const std::vector<PostedKey>& strokes);

    bool shiftPressed_ = false;
    KeyboardLayout& layout_;
    KeyMap keyMap_;
    KeyPoster& poster_;
    Workspace& workspace_;
    Pause& pause_;
    Subscription shiftObserver_;
};

}  // namespace vantor
