#pragma once
// Tasks on the toolkit's timers. Main thread; tasks that have not run go with it.

#include <QtCore/QObject>

#include "base/Scheduler.h"

namespace vantor {

class QtScheduler final : public Scheduler {
public:
    void after(std::chrono::milliseconds delay, std::function<void()> task) override;

private:
    QObject context_;
};

}  // namespace vantor
