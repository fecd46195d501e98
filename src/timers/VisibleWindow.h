#pragma once
// The part of the timeline that is shown now. Pure; any thread.

#include <span>
#include <vector>

#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "timers/TimelineEvent.h"

namespace vantor {

enum class WindowKind { shown, watched };

// Minutes. Only a stored number counts; the shown window is kept in hours, the watched one in minutes.
[[nodiscard]] double windowMinutes(const Defaults& defaults, WindowKind kind);

// The current minute in the timeline's frame, whose day begins at the local minute of 00:00 UTC.
[[nodiscard]] int currentMinute(const LocalTime& local, int utcOffsetSeconds);
[[nodiscard]] int currentMinute(const Clock& clock, Clock::Seconds at);

// Until it starts, and from when its gathering comes within the window.
[[nodiscard]] bool isVisible(const TimelineEvent& occurrence, double now, double windowMinutes);
[[nodiscard]] std::vector<TimelineEvent> visibleWindow(std::span<const TimelineEvent> timeline, double now,
                                                       double windowMinutes);

}  // namespace vantor
