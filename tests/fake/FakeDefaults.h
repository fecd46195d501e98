#pragma once
// Settings in memory that count their writes and refuse one when told to. Any thread; observers run in the writing
// call.

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

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
        return change(key, [&](auto& values, const std::string& name) { values.insert_or_assign(name, value); });
    }
    [[nodiscard]] Verdict removeValue(std::string_view key) override {
        return change(key, [](auto& values, const std::string& name) { values.erase(name); });
    }
    Subscription observe(ChangeHandler handler) override {
        const std::lock_guard lock(mutex_);
        const int number = next_++;
        handlers_.emplace(number, std::move(handler));
        return Subscription([this, number] {
            const std::lock_guard guard(mutex_);
            handlers_.erase(number);
        });
    }

    // For arranging a test.
    void put(std::string_view key, SettingValue value) {
        const std::lock_guard lock(mutex_);
        values_.insert_or_assign(std::string(key), std::move(value));
    }
    void failAtWrite(int number) {  // the first is 1
        const std::lock_guard lock(mutex_);
        failing_ = number;
    }
    [[nodiscard]] int writes() const {
        const std::lock_guard lock(mutex_);
        return writes_;
    }

private:
    template <typename Edit>
    Verdict change(std::string_view key, const Edit& edit) {
        std::map<int, ChangeHandler> handlers;
        {
            const std::lock_guard lock(mutex_);
            if (++writes_ == failing_) return Verdict::failed;
            edit(values_, std::string(key));
            handlers = handlers_;
        }
        for (const auto& [number, handler] : handlers) handler(std::string(key));
        return Verdict::stored;
    }

    mutable std::mutex mutex_;
    std::map<std::string, SettingValue> values_;
    std::map<int, ChangeHandler> handlers_;
    int next_ = 0;
    int writes_ = 0;
    int failing_ = 0;
};

}  // namespace vantor
