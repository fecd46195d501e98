#pragma once
// Makes the toolkit's windows float over a game on macOS. Buffered, not deferred, above the others, ordered out, and
// answering the first click they are by the toolkit itself. Main thread.

#include "platform/OverlayWindows.h"

namespace vantor {

class NativeOverlayWindows final : public OverlayWindows {
public:
    // After the toolkit has set the window's flags, which sets level and shadow too.
    void prepare(NativeWindow window, WindowNature nature) override;
    [[nodiscard]] bool keepFrame(NativeWindow window, const std::string& name) override;
    void orderFront(NativeWindow window) override;
    // Asked for only where another client holds the pointer.
    void takeFocus(NativeWindow) override {}
};

}  // namespace vantor
