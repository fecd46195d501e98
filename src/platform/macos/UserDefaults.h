#pragma once
// The settings in the user's defaults, the standard domain. What another running copy of Vantor writes is noticed as
// well: each write is told to all of them. Values on any thread;
// observing on the main thread.

#include <memory>

#include "base/MainThread.h"
#include "platform/Defaults.h"

namespace vantor {

class UserDefaults final : public Defaults {
public:
    // Construct and destroy on the main thread. mainThread may be null where nobody observes.
    explicit UserDefaults(MainThread* mainThread);
    ~UserDefaults() override;

    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override;
    [[nodiscard]] Verdict setValue(std::string_view key, const SettingValue& value) override;
    [[nodiscard]] Verdict removeValue(std::string_view key) override;
    Subscription observe(ChangeHandler handler) override;

private:
    struct Changes;

    [[nodiscard]] Verdict written();
    void listen();

    std::shared_ptr<Changes> changes_;  // also held by the notices on their way
};

}  // namespace vantor
