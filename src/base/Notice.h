#pragma once
// A published change that views listen to. Main thread. A subscription may outlive the notice.

#include <functional>
#include <utility>

#include "base/ObserverList.h"

namespace vantor {

class Notice {
public:
    using Handler = std::function<void()>;

    Subscription observe(Handler handler) { return observers_.add(std::move(handler)); }
    void announce() const { observers_.tell(); }

private:
    ObserverList<Handler> observers_;
};

}  // namespace vantor
