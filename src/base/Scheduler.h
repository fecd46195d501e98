#pragma once
// Tasks that run later on the main thread. Main thread.

#include <chrono>
#include <functional>

namespace vantor {

class Scheduler {
public:
    virtual ~Scheduler() = default;
    // Once, not before the time is over; in order of their times, those of the same time in call order.
    virtual void after(std::chrono::milliseconds delay, std::function<void()> task) = 0;
};

}  // namespace vantor
