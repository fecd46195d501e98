#pragma once
// A session that records the requests and answers when told to, on the queue it is given. Plain C++; any thread.

#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "base/TaskQueue.h"
#include "platform/UrlSession.h"

namespace vantor {

class FakeUrlSession final : public UrlSession {
public:
    explicit FakeUrlSession(TaskQueue& queue) : queue_(queue) {}

    void dataTask(UrlRequest request, Completion completion) override {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(completion));
        waitingUrls_.push_back(request.url);
        requests_.push_back(std::move(request));
    }

    void statusTask(UrlRequest request, StatusCompletion completion) override {
        const std::lock_guard lock(mutex_);
        requests_.push_back(std::move(request));
        waitingForStatus_.push_back(std::move(completion));
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
        return answerBy([&](const std::string&) { return body; }, place);
    }
    // The same, with what the function gives for the address.
    template <typename BodyOf>
    bool answerBy(const BodyOf& bodyOf, std::size_t place = 0) {
        const std::lock_guard lock(mutex_);
        if (place >= waiting_.size()) return false;
        const auto url = waitingUrls_.begin() + static_cast<std::ptrdiff_t>(place);
        std::optional<std::string> body = bodyOf(*url);
        waitingUrls_.erase(url);
        return answerOne(waiting_, std::move(body), place);
    }
    bool answerStatus(std::optional<int> status, std::size_t place = 0) {
        const std::lock_guard lock(mutex_);
        return answerOne(waitingForStatus_, status, place);
    }

private:
    template <typename Task, typename Answer>
    bool answerOne(std::deque<Task>& waiting, Answer answer, std::size_t place) {
        if (place >= waiting.size()) return false;
        Task completion = std::move(waiting[place]);
        waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(place));
        queue_.post([completion = std::move(completion), answer = std::move(answer)] { completion(answer); });
        return true;
    }

    TaskQueue& queue_;
    mutable std::mutex mutex_;
    std::vector<UrlRequest> requests_;
    std::deque<Completion> waiting_;
    std::deque<std::string> waitingUrls_;
    std::deque<StatusCompletion> waitingForStatus_;
};

}  // namespace vantor
