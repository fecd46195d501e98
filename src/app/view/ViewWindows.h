#pragma once
// Makes the four windows with their views. The main window's content is built when it is first shown, since most of a
// game's hours pass without it. Main thread; outlives the windows that it made.

#include <memory>

#include "app/AppObserver.h"
#include "platform/OverlayWindows.h"
#include "platform/Screens.h"

namespace vantor {

class ViewWindows {
public:
    ViewWindows(OverlayWindows& overlayWindows, const Screens& screens)
        : overlayWindows_(overlayWindows), screens_(screens) {}

    [[nodiscard]] std::unique_ptr<AppWindow> make(AppWindowName name, AppObserver& appObserver);

private:
    OverlayWindows& overlayWindows_;
    const Screens& screens_;
};

}  // namespace vantor
