#pragma once
// Keys by the system's event monitors. Those of other applications come only with the permission to hear them. Main
// thread.

#include <memory>
#include <vector>

#include "platform/KeyMonitors.h"

namespace vantor {

class EventMonitors final : public KeyMonitors {
public:
    Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) override;
    Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) override;

    // Adds the global ones anew, in their order: one that was added without the permission to hear keys stays deaf.
    void renew();
    // Whether a key of another application has ever come.
    [[nodiscard]] bool heardOthers() const { return heardOthers_; }

private:
    struct Global;

    bool heardOthers_ = false;
    std::vector<std::shared_ptr<Global>> globals_;
};

}  // namespace vantor
