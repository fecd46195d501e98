#pragma once
// The way to the main thread through the toolkit's event loop. The object belongs to the main thread.

#include <QtCore/QObject>

#include "base/MainThread.h"

namespace vantor {

class QtMainThread final : public MainThread {
public:
    void post(std::function<void()> task) override;

private:
    QObject receiver_;  // what is still posted when it goes is dropped
};

}  // namespace vantor
