#pragma once
// A scheduler whose time a test moves by hand. One thread.

#include <map>
#include <utility>

#include "base/Scheduler.h"

namespace vantor {

class FakeScheduler final : public Scheduler {
public:
    void after(std::chrono::milliseconds delay, std::function<void()> task) override {
        tasks_.emplace(now_ + delay, std::move(task));
    }
    // Runs what comes due on the way, also what that schedules.
    void advance(std::chrono::milliseconds duration) {
        const auto end = now_ + duration;
        while (!tasks_.empty() && tasks_.begin()->first <= end) {
            auto next = tasks_.extract(tasks_.begin());
            now_ = next.key();
            next.mapped()();
        }
        now_ = end;
    }
    [[nodiscard]] std::size_t waiting() const { return tasks_.size(); }

private:
    std::chrono::milliseconds now_{0};
    std::multimap<std::chrono::milliseconds, std::function<void()>> tasks_;
};

}  // namespace vantor
