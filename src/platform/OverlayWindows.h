#pragma once
// Gives a toolkit window the nature that floats over a game. Main thread; the window exists natively and is not yet
// mapped.

#include <cstdint>

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
    virtual void prepare(NativeWindow window, WindowNature nature) = 0;
};

}  // namespace vantor
