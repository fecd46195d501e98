#pragma once
// A session that records the requests and answers when told to, on the queue it is given. Plain C++; any thread.

#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/TaskQueue.h"
#include "platform/UrlSession.h"

namespace vantor {

class FakeUrlSession final : public UrlSession {
public:
    explicit FakeUrlSession(TaskQueue& queue) : queue_(queue) {}

    void dataTask(UrlRequest request, Completion completion) override {
        const std::lock_guard lock(mutex_);
        requests_.push_back(std::move(request));
        waiting_.push_back(std::move(completion));
    }

    [[nodiscard]] std::vector<UrlRequest> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }
    [[nodiscard]] std::size_t waiting() const {
        const std::lock_guard lock(mutex_);
        return waiting_.size();
    }
    // Answers the request at this place among those that wait. False when there is none.
    bool answer(std::optional<std::string> body, std::size_t place = 0) {
        Completion completion;
        {
            const std::lock_guard lock(mutex_);
            if (place >= waiting_.size()) return false;
            completion = std::move(waiting_[place]);
            waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(place));
        }
        queue_.post([completion = std::move(completion), body = std::move(body)] { completion(body); });
        return true;
    }

private:
    TaskQueue& queue_;
    mutable std::mutex mutex_;
    std::vector<UrlRequest> requests_;
    std::deque<Completion> waiting_;
};

}  // namespace vantor
