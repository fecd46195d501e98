#include "input/ClipboardManager.h"

#include "input/KeyStrokes.h"

namespace vantor {
namespace {

// The game reads its keys once per frame and misses faster ones.
constexpr std::chrono::microseconds pauseAfterPost{8000};
// Long enough for a busy window manager; after it the typing is worth more than the certainty.
constexpr std::chrono::milliseconds focusPatience{250};

}  // namespace

ClipboardManager::ClipboardManager(KeyboardLayout& layout, KeyPoster& poster, KeyMonitors& monitors,
                                   Workspace& workspace, Pause& pause)
    : layout_(layout),
      keyMap_(KeyMap::learn(layout)),
      poster_(poster),
      workspace_(workspace),
      pause_(pause),
      shiftObserver_(monitors.addLocalMonitor(maskOf(KeyEventType::flagsChanged), [this](const KeyEvent& event) {
          shiftPressed_ = (event.flags & modifier::shift) != 0;
          return KeyMonitors::Passing::passOn;
      })) {}

std::string ClipboardManager::typeString(const std::string& text) {
    (void)type(text);
    return "typed in app";
}

ClipboardManager::Missing ClipboardManager::type(const std::string& text) {
    prepare();
    const bool whole = post(strokesOfText(keyMap_, text));
    return {untypableCharacters(keyMap_, text), !whole};
}

ClipboardManager::Missing ClipboardManager::pressReadableKeys(const std::string& combination) {
    prepare();
    const bool whole = post(strokesOfReadableKeys(keyMap_, combination));
    return {unknownParts(keyMap_, combination), !whole};
}

void ClipboardManager::prepare() {
    workspace_.hideAndUnhideWithoutActivation();
    // Our windows do not hear of a release that happens while another application has the keyboard.
    shiftPressed_ = false;
    static_cast<void>(workspace_.awaitFocusReturned(focusPatience));
    if (layout_.refresh()) keyMap_ = KeyMap::learn(layout_);
}

bool ClipboardManager::post(const std::vector<PostedKey>& strokes) {
    const auto typing = poster_.beginTyping();
    bool whole = true;
    for (const PostedKey& each : strokes) {
        if (const auto more = poster_.pauseBefore(each); more.count() > 0) pause_.wait(more);
        const PostVerdict verdict = poster_.post(each);
        whole = whole && verdict == PostVerdict::posted;
        // A post that fails ends nothing: the releases behind it must still go out. Unless none can.
        if (verdict == PostVerdict::lost) return false;
        pause_.wait(pauseAfterPost);
    }
    if (const auto more = poster_.pauseAtEnd(); more.count() > 0) pause_.wait(more);
    return whole;
}

}  // namespace vantor
