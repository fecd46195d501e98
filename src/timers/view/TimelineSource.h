#pragma once
// Where the views of the timeline get it from; what it refers to outlives them. Main thread.

#include <functional>
#include <memory>

#include "base/Subscription.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "timers/Timeline.h"

namespace vantor {

struct TimelineSource {
    const Clock& clock;
    Defaults& defaults;
    std::function<std::shared_ptr<const Timeline>()> timeline;  // nothing before the first one
    std::function<void()> followZone;                           // at every look at the clock
    // After a change of the timeline or of anything else that is loaded.
    std::function<Subscription(std::function<void()> handler)> observe;
};

}  // namespace vantor
