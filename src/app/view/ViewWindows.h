#pragma once
// Makes the four windows with their views. The main window's content is built when it is first shown, since most of a
// game's hours pass without it. Main thread; outlives the windows that it made.

#include <memory>
#include <utility>

#include "app/AppObserver.h"
#include "app/view/ViewNeeds.h"
#include "timers/view/WatchedFeed.h"

namespace vantor {

class ViewWindows {
public:
    explicit ViewWindows(ViewNeeds needs) : needs_(std::move(needs)) {}

    [[nodiscard]] std::unique_ptr<AppWindow> make(AppWindowName name, AppObserver& appObserver);

private:
    // Puts away what explains the icon at the first start.
    void endBubble(Defaults& defaults);

    ViewNeeds needs_;
    std::unique_ptr<AppWindow> bubble_;
    bool bubbleWanted_ = false;
    // What the watched list and the badge of the Timers tab show; made with the first window.
    std::unique_ptr<WatchedFeed> watched_;
};

}  // namespace vantor
