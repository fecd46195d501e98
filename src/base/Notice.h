#pragma once
// A published change that views listen to. Main thread. A subscription may outlive the notice.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "base/Subscription.h"

namespace vantor {

class Notice {
public:
    using Handler = std::function<void()>;

    Subscription observe(Handler handler) {
        const auto key = listeners_->next++;
        listeners_->handlers.emplace(key, std::move(handler));
        return Subscription([listeners = std::weak_ptr(listeners_), key] {
            if (const auto alive = listeners.lock()) alive->handlers.erase(key);
        });
    }

    void announce() const {
        // A copy: a handler may end its own subscription.
        const auto handlers = listeners_->handlers;
        for (const auto& [key, handler] : handlers)
            if (listeners_->handlers.contains(key)) handler();
    }

private:
    struct Listeners {
        std::map<std::uint64_t, Handler> handlers;
        std::uint64_t next = 0;
    };
    std::shared_ptr<Listeners> listeners_ = std::make_shared<Listeners>();
};

}  // namespace vantor
