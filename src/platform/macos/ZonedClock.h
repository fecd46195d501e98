#pragma once
// The system's time, zone and calendar. Any thread.

#include "platform/Clock.h"

namespace vantor {

// The zone is looked up at every call, so that a player who travels is followed.
class ZonedClock final : public Clock {
public:
    [[nodiscard]] Seconds now() const override;
    [[nodiscard]] double preciseNow() const override;
    [[nodiscard]] int utcOffsetSeconds(Seconds at) const override;
    [[nodiscard]] LocalTime localTime(Seconds at) const override;
};

}  // namespace vantor
