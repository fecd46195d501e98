#pragma once
// The system's time, its local zone and its sleep. Any thread.

#include "platform/Clock.h"

namespace vantor {

// The zone is that of TZ, or else the machine's, looked up at every call: a player who travels is followed.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Seconds now() const override;
    [[nodiscard]] double preciseNow() const override;
    [[nodiscard]] int utcOffsetSeconds(Seconds at) const override;
    [[nodiscard]] LocalTime localTime(Seconds at) const override;
};

class SystemPause final : public Pause {
public:
    void wait(std::chrono::microseconds duration) override;
};

}  // namespace vantor
