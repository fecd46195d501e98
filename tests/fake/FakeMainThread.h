#pragma once
// The main thread's queue, whose tasks a test runs by hand.

#include "base/MainThread.h"
#include "fake/FakeTaskQueue.h"

namespace vantor {

class FakeMainThread final : public TasksByHand<MainThread> {};

}  // namespace vantor
