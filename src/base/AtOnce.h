#pragma once
// The two ways to a thread for where one thread does everything: what is posted has run when the call returns.

#include "base/MainThread.h"
#include "base/TaskQueue.h"

namespace vantor {

class TaskQueueAtOnce final : public TaskQueue {
public:
    void post(std::function<void()> task) override { task(); }
};

class MainThreadAtOnce final : public MainThread {
public:
    void post(std::function<void()> task) override { task(); }
};

}  // namespace vantor
