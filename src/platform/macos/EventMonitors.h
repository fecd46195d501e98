#pragma once
// Keys by the system's event monitors. Those of other applications come only with the permission to hear them. Main
// thread.

#include "platform/KeyMonitors.h"

namespace vantor {

class EventMonitors final : public KeyMonitors {
public:
    Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) override;
    Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) override;
};

}  // namespace vantor
