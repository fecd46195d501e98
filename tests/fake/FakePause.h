#pragma once
// Counts the waits instead of waiting. One thread.

#include <functional>
#include <vector>

#include "platform/Clock.h"

namespace vantor {

class FakePause final : public Pause {
public:
    void wait(std::chrono::microseconds duration) override {
        waits.push_back(duration);
        if (atWait) atWait();
    }

    std::vector<std::chrono::microseconds> waits;
    std::function<void()> atWait;
};

}  // namespace vantor
