#pragma once
// Settings in memory that count their writes and refuse one when told to. Any thread; observers run in the writing
// call.

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "base/ObserverList.h"
#include "platform/Defaults.h"

namespace vantor {

class FakeDefaults final : public Defaults {
public:
    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override {
        const std::lock_guard lock(mutex_);
        const auto found = values_.find(std::string(key));
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] Verdict setValue(std::string_view key, const SettingValue& value) override {
        return change(key, [&](const std::string& name) { values_.insert_or_assign(name, value); });
    }
    [[nodiscard]] Verdict removeValue(std::string_view key) override {
        return change(key, [&](const std::string& name) { values_.erase(name); });
    }
    Subscription observe(ChangeHandler handler) override { return observers_.add(std::move(handler)); }

    // For arranging a test.
    void put(std::string_view key, SettingValue value) {
        const std::lock_guard lock(mutex_);
        values_.insert_or_assign(std::string(key), std::move(value));
    }
    void failAtWrite(int number) { failing_ = number; }  // the first is 1
    [[nodiscard]] int writes() const { return writes_; }

private:
    template <typename Edit>
    Verdict change(std::string_view key, const Edit& edit) {
        const std::string name(key);
        {
            const std::lock_guard lock(mutex_);
            if (++writes_ == failing_) return Verdict::failed;
            edit(name);
        }
        observers_.tell(name);
        return Verdict::stored;
    }

    mutable std::mutex mutex_;
    std::map<std::string, SettingValue> values_;
    ObserverList<ChangeHandler> observers_;
    std::atomic<int> writes_ = 0;
    std::atomic<int> failing_ = 0;
};

}  // namespace vantor
