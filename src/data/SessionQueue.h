#pragma once
// The one worker thread on which every response is handled and the loaders' records live. Plain C++ primitives only, so
// that the thread sanitizer sees all of it. Construct, finish and destroy on one thread, which is not the queue's own.

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "base/TaskQueue.h"

namespace vantor {

class SessionQueue final : public TaskQueue {
public:
    SessionQueue();
    ~SessionQueue() override;
    SessionQueue(const SessionQueue&) = delete;
    SessionQueue& operator=(const SessionQueue&) = delete;

    void post(std::function<void()> task) override;
    // Lets the task under way end, drops the rest and all that is posted later, and joins. For owners whose tasks use
    // things that go before the queue does; the destructor does the same.
    void finish();

private:
    void work();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> tasks_;
    bool stopping_ = false;
    std::thread worker_;  // last: it uses all of the above
};

}  // namespace vantor
