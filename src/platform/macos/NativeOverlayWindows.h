#pragma once
// Makes the toolkit's windows float over a game on macOS. Borderless, buffered, not deferred, above the others, ordered
// in and out, and answering the first click they are by the toolkit itself, and dragged by their ground by their own
// doing: the system would drag them by every control too, since it sees one view only. Main thread.

#include "platform/OverlayWindows.h"

namespace vantor {

class NativeOverlayWindows final : public OverlayWindows {
public:
    // After the toolkit has set the window's flags, which sets level and shadow too.
    void prepare(NativeWindow window, WindowNature nature) override;
};

}  // namespace vantor
