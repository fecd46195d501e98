#pragma once
// The two permissions of the system's privacy settings: Accessibility for pressing keys, Input Monitoring for hearing
// them. The system announces no change, so they are looked at each second while somebody listens. Main thread.

#include <chrono>
#include <memory>

#include "base/Scheduler.h"
#include "platform/Permissions.h"

namespace vantor {

class PrivacyPermissions final : public Permissions {
public:
    static constexpr std::chrono::seconds between{1};

    explicit PrivacyPermissions(Scheduler& scheduler);

    [[nodiscard]] bool granted(Kind kind) const override;
    void ask(Kind kind) override;
    Subscription observe(std::function<void()> handler) override;

private:
    struct Watch;

    std::shared_ptr<Watch> watch_;  // the next look holds it weakly
};

}  // namespace vantor
