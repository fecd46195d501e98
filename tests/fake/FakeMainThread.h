#pragma once
// The main thread's queue as a list that a test runs by hand. Posting is allowed from any thread.

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "base/MainThread.h"

namespace vantor {

class FakeMainThread final : public MainThread {
public:
    void post(std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }

    // Runs what is posted, and what that posts; how many tasks ran.
    std::size_t runAll() {
        std::size_t ran = 0;
        for (;;) {
            std::vector<std::function<void()>> tasks;
            {
                const std::lock_guard lock(mutex_);
                tasks.swap(tasks_);
            }
            if (tasks.empty()) return ran;
            for (auto& task : tasks) task();
            ran += tasks.size();
        }
    }

private:
    std::mutex mutex_;
    std::vector<std::function<void()>> tasks_;
};

}  // namespace vantor
