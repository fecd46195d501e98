#pragma once
// The way from any thread to the main thread.

#include <functional>

namespace vantor {

class MainThread {
public:
    virtual ~MainThread() = default;
    // Runs the task on the main thread, later, in call order. Any thread.
    virtual void post(std::function<void()> task) = 0;
};

}  // namespace vantor
