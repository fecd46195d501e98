#pragma once
// Gives a toolkit window the nature that floats over a game. Main thread; the window exists natively.

#include <cstdint>
#include <string>

namespace vantor {

using NativeWindow = std::uintptr_t;  // the toolkit's window id: an X window, an NSView pointer

enum class WindowNature {
    overlay,        // maps without the focus, takes it on a click
    floating,       // the same for a small window; takes none on a click where the system can keep the two apart
    nonActivating,  // never takes the focus
    popup,          // takes the focus when it is shown
    raisedPopup,    // the same, over every other floating window where the system has such levels (1000)
};

class OverlayWindows {
public:
    virtual ~OverlayWindows() = default;
    // Before it is first mapped, and where whoever asks wants it. A system with a middle of its own for the list and
    // the popups puts them there instead.
    virtual void prepare(NativeWindow window, WindowNature nature) = 0;
    // Puts it back where the player left it, and keeps its frame under this name from now on. False: the system keeps
    // no frames, and whoever asks does.
    [[nodiscard]] virtual bool keepFrame(NativeWindow window, const std::string& name) = 0;
    // The toolkit has shown or raised it just now.
    virtual void orderFront(NativeWindow window) = 0;
    // Gives it the focus if it is on the screen. The answer is the desktop's notice of the frontmost application.
    virtual void takeFocus(NativeWindow window) = 0;
};

}  // namespace vantor
