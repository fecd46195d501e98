#pragma once
// What the adapters asked of the system's services, one line a call, in order, from any thread.

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace macdouble {

class ServiceCalls {
public:
    void add(std::string call) {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
    }
    // What came since it was asked last.
    std::vector<std::string> take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(calls_, {});
    }

private:
    std::mutex mutex_;
    std::vector<std::string> calls_;
};

ServiceCalls& serviceCalls();

}  // namespace macdouble
