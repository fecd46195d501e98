#pragma once
// A queue whose tasks a test runs by hand. One thread.

#include <deque>
#include <utility>

#include "base/TaskQueue.h"

namespace vantor {

class FakeTaskQueue final : public TaskQueue {
public:
    void post(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
    // Also runs what the tasks post.
    void runAll() {
        while (!tasks_.empty()) {
            auto task = std::move(tasks_.front());
            tasks_.pop_front();
            task();
        }
    }

private:
    std::deque<std::function<void()>> tasks_;
};

}  // namespace vantor
