#pragma once
// The one list of those who want to be told of something, in the order in which they came. While it tells, handlers may
// end observations, their own included, add new ones, and end the list: who has ended is not called any more, who came
// meanwhile is called the next time. Any thread adds and ends; one thread tells. A subscription may outlive the list.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "base/Subscription.h"

namespace vantor {

template <typename Observer>
class ObserverList {
public:
    Subscription add(Observer observer) {
        const std::lock_guard lock(state_->mutex);
        const auto number = state_->next++;
        state_->observers.emplace(number, std::make_shared<Observer>(std::move(observer)));
        return Subscription([state = std::weak_ptr(state_), number] {
            const auto alive = state.lock();
            if (!alive) return;
            std::shared_ptr<Observer> ended;  // destroyed without the lock: what it holds may end others
            const std::lock_guard guard(alive->mutex);
            if (auto found = alive->observers.extract(number)) ended = std::move(found.mapped());
        });
    }

    // Calls `visit` with each observer until one call returns false.
    template <typename Visit>
    void visitWhile(const Visit& visit) const {
        const std::weak_ptr state(state_);
        std::uint64_t last = 0;
        for (const auto end = state_->next;;) {
            const auto observer = after(state, last, end);
            if (!observer || !visit(*observer)) return;
        }
    }

    template <typename... Arguments>
    void tell(const Arguments&... arguments) const {
        visitWhile([&](const Observer& observer) {
            observer(arguments...);
            return true;
        });
    }

private:
    struct State {
        std::mutex mutex;
        std::map<std::uint64_t, std::shared_ptr<Observer>> observers;
        std::uint64_t next = 1;
    };

    // The next one after `last`, which becomes its number; none where the list has ended.
    static std::shared_ptr<Observer> after(const std::weak_ptr<State>& state, std::uint64_t& last, std::uint64_t end) {
        const auto alive = state.lock();
        if (!alive) return nullptr;
        const std::lock_guard lock(alive->mutex);
        const auto found = alive->observers.upper_bound(last);
        if (found == alive->observers.end() || found->first >= end) return nullptr;
        last = found->first;
        return found->second;
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace vantor
