#include "data/SessionQueue.h"

#include <utility>

namespace vantor {

SessionQueue::SessionQueue() : worker_([this] { work(); }) {}

SessionQueue::~SessionQueue() { finish(); }

void SessionQueue::finish() {
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        dropped.swap(tasks_);
    }
    wake_.notify_one();
    if (worker_.joinable()) worker_.join();
}

void SessionQueue::post(std::function<void()> task) {
    {
        const std::lock_guard lock(mutex_);
        if (stopping_) return;
        tasks_.push_back(std::move(task));
    }
    wake_.notify_one();
}

void SessionQueue::work() {
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
            if (stopping_) return;
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task();
    }
}

}  // namespace vantor
