#pragma once
// What is shown of a day's timeline: the whole of any evening, wherever the zone puts the end of the UTC day. Pure; any
// thread.

#include "timers/Timeline.h"

namespace vantor {

// The day's occurrences in the frames of the UTC day before, its own and the one after, each once: what a last pass has
// beyond its day is the next day's. utcOffsetSeconds: the one that the day was computed with.
[[nodiscard]] Timeline shownTimeline(const Timeline& day, int utcOffsetSeconds);

}  // namespace vantor
