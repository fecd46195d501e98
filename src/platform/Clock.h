#pragma once
// Now and the local zone, and the wait between posted events. Any thread.

#include <chrono>
#include <cstdint>

namespace vantor {

struct LocalTime {
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const LocalTime&) const = default;
};

class Clock {
public:
    using Seconds = std::int64_t;  // since 1970-01-01 00:00 UTC

    virtual ~Clock() = default;
    [[nodiscard]] virtual Seconds now() const = 0;
    // The same moment with its fraction of a second.
    [[nodiscard]] virtual double preciseNow() const { return static_cast<double>(now()); }
    // East positive, for the local zone as it is at this call (a zone that the player changes is followed).
    [[nodiscard]] virtual int utcOffsetSeconds(Seconds at) const = 0;
    [[nodiscard]] virtual LocalTime localTime(Seconds at) const = 0;
};

class Pause {
public:
    virtual ~Pause() = default;
    // At least this long.
    virtual void wait(std::chrono::microseconds duration) = 0;
};

}  // namespace vantor
