#include "app/WindowPlan.h"

namespace vantor {

std::vector<WindowStep> windowPlan(bool enabled, bool visible) {
    using enum WindowStep::Kind;
    using enum AppWindowName;
    if (!enabled) return {{orderOut, icon}, {orderOut, main}, {orderOut, emoji}, {orderOut, watchedEvents}};
    if (visible) return {{orderFront, icon}, {orderFront, emoji}, {orderFront, main}, {orderOut, watchedEvents}};
    return {
        {orderFront, icon}, {orderFront, emoji}, {orderOut, main}, {orderFront, watchedEvents}, {handFocusBack, main}};
}

}  // namespace vantor
