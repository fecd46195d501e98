#pragma once
// The published timeline. It is computed on the session queue; everybody else reads immutable snapshots, from any
// thread. A schedule that cannot be computed stops the program.

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "data/Catalogue.h"
#include "data/WebApi.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "timers/Timeline.h"

namespace vantor {

class TimelineFeed {
public:
    // Queue: one line for standard error; does not return in the program.
    using Stop = std::function<void(const std::string& line)>;
    // Queue: after a new timeline was published.
    using Published = std::function<void()>;

    TimelineFeed(const Clock& clock, const Defaults& defaults, Stop stop, Published published);

    // Queue. The achievement ids of the active sections' events.
    std::vector<std::int64_t> compute(const std::vector<EventsSection>& sections,
                                      const std::vector<AchievementCompletition>& eventProgress);

    // Nothing before the first computation.
    [[nodiscard]] std::shared_ptr<const Timeline> timeline() const;
    // The same for lists: with the evenings before and after.
    [[nodiscard]] std::shared_ptr<const Timeline> shown() const;
    // True once for each change of the zone's offset since the last computation, and never before the first one.
    [[nodiscard]] bool zoneChanged();

private:
    const Clock& clock_;
    const Defaults& defaults_;
    Stop stop_;
    Published published_;

    mutable std::mutex mutex_;
    std::shared_ptr<const Timeline> timeline_;
    std::shared_ptr<const Timeline> shown_;
    int utcOffsetSeconds_ = 0;
};

}  // namespace vantor
