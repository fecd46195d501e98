#pragma once
// A serial queue of tasks: one after the other, in the order of the calls. Any thread may post.

#include <functional>

namespace vantor {

class TaskQueue {
public:
    virtual ~TaskQueue() = default;
    virtual void post(std::function<void()> task) = 0;
};

}  // namespace vantor
