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
        keep(bodies_, std::move(request), std::move(completion));
    }
    void statusTask(UrlRequest request, StatusCompletion completion) override {
        keep(statuses_, std::move(request), std::move(completion));
    }

    [[nodiscard]] std::vector<UrlRequest> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }
    [[nodiscard]] std::size_t waiting() const {
        const std::lock_guard lock(mutex_);
        return bodies_.size();
    }
    // Answers the request at this place among those that wait. False when there is none.
    bool answer(std::optional<std::string> body, std::size_t place = 0) {
        return answerBy([&](const std::string&) { return body; }, place);
    }
    // The same, with what the function gives for the address.
    template <typename BodyOf>
    bool answerBy(const BodyOf& bodyOf, std::size_t place = 0) {
        return answerOne(bodies_, bodyOf, place);
    }
    bool answerStatus(std::optional<int> status, std::size_t place = 0) {
        return answerOne(statuses_, [&](const std::string&) { return status; }, place);
    }

private:
    template <typename Task>
    using Waiting = std::deque<std::pair<std::string, Task>>;

    template <typename Task>
    void keep(Waiting<Task>& waiting, UrlRequest request, Task task) {
        const std::lock_guard lock(mutex_);
        waiting.emplace_back(request.url, std::move(task));
        requests_.push_back(std::move(request));
    }
    template <typename Task, typename AnswerOf>
    bool answerOne(Waiting<Task>& waiting, const AnswerOf& answerOf, std::size_t place) {
        const std::lock_guard lock(mutex_);
        if (place >= waiting.size()) return false;
        const auto found = waiting.begin() + static_cast<std::ptrdiff_t>(place);
        queue_.post([task = std::move(found->second), answer = answerOf(found->first)] { task(answer); });
        waiting.erase(found);
        return true;
    }

    TaskQueue& queue_;
    mutable std::mutex mutex_;
    std::vector<UrlRequest> requests_;
    Waiting<Completion> bodies_;
    Waiting<StatusCompletion> statuses_;
};

}  // namespace vantor
