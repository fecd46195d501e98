#include "input/ClipboardManager.h"

#include "input/KeyStrokes.h"

namespace vantor {
namespace {

// The game reads its keys once per frame and misses faster ones.
constexpr std::chrono::microseconds pauseAfterPost{8000};
// Long enough for a busy window manager; after it the typing is worth more than the certainty.
constexpr std::chrono::milliseconds focusPatience{250};

}  // namespace

ClipboardManager::ClipboardManager(const KeyboardLayout& layout, KeyPoster& poster, KeyMonitors& monitors,
                                   Workspace& workspace, Pause& pause)
    : keyMap_(KeyMap::learn(layout)),
      poster_(poster),
      workspace_(workspace),
      pause_(pause),
      shiftObserver_(monitors.addLocalMonitor(maskOf(KeyEventType::flagsChanged), [this](const KeyEvent& event) {
          shiftPressed_ = (event.flags & modifier::shift) != 0;
          return KeyMonitors::Passing::passOn;
      })) {}

std::string ClipboardManager::typeString(const std::string& text) {
    handBackFocus();
    post(strokesOfText(keyMap_, text));
    return "typed in app";
}

void ClipboardManager::pressReadableKeys(const std::string& combination) {
    handBackFocus();
    post(strokesOfReadableKeys(keyMap_, combination));
}

void ClipboardManager::handBackFocus() {
    workspace_.hideAndUnhideWithoutActivation();
    // Our windows do not hear of a release that happens while another application has the keyboard.
    shiftPressed_ = false;
    static_cast<void>(workspace_.awaitFocusReturned(focusPatience));
}

void ClipboardManager::post(const std::vector<PostedKey>& strokes) {
    const auto typing = poster_.beginTyping();
    for (const PostedKey& each : strokes) {
        // A post that fails ends nothing: the releases behind it must still go out. Unless none can.
        if (poster_.post(each) == PostVerdict::lost) return;
        pause_.wait(pauseAfterPost);
    }
}

}  // namespace vantor
