#pragma once
// The application's timeline, for the views that show it. Main thread.

#include "app/AppObserver.h"
#include "timers/view/TimelineSource.h"

namespace vantor {

[[nodiscard]] inline TimelineSource timelineOf(AppObserver& appObserver) {
    GameData& data = appObserver.data();
    return {appObserver.clock(), appObserver.defaults(), [&data] { return data.timeline(); },
            [&data] { data.followZone(); },
            [&data](std::function<void()> handler) { return data.observe(std::move(handler)); }};
}

}  // namespace vantor
