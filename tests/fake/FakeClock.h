#pragma once
// A clock that a test moves by hand, in a zone that it sets. Any thread.

#include <atomic>

#include "platform/Clock.h"

namespace vantor {

class FakeClock final : public Clock {
public:
    explicit FakeClock(Seconds now = 0, int offsetSeconds = 0) : now_(now), offset_(offsetSeconds) {}

    [[nodiscard]] Seconds now() const override { return now_; }
    [[nodiscard]] int utcOffsetSeconds(Seconds) const override { return offset_; }
    [[nodiscard]] LocalTime localTime(Seconds at) const override {
        const Seconds day = 24 * 60 * 60;
        const Seconds second = ((at + offset_) % day + day) % day;
        return {static_cast<int>(second / 3600), static_cast<int>(second / 60 % 60), static_cast<int>(second % 60)};
    }

    void set(Seconds now) { now_ = now; }
    void advance(Seconds by) { now_ = now_ + by; }
    void setOffset(int seconds) { offset_ = seconds; }

private:
    std::atomic<Seconds> now_;
    std::atomic<int> offset_;
};

}  // namespace vantor
