#pragma once
// A queue whose tasks a test runs by hand. Posting is allowed from any thread.

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "base/TaskQueue.h"

namespace vantor {

template <typename Queue>
class TasksByHand : public Queue {
public:
    void post(std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    // Runs what is posted, and what that posts; how many tasks ran.
    std::size_t runAll() {
        for (std::size_t ran = 0;;) {
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

class FakeTaskQueue final : public TasksByHand<TaskQueue> {};

}  // namespace vantor
