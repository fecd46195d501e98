#pragma once
// The typed per-user settings store. A value has the type it was stored with and no other: a text is no boolean. Any
// thread.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/Subscription.h"

namespace vantor {

using SettingValue = std::variant<bool, double, std::string, std::vector<std::string>>;

class Defaults {
public:
    enum class Verdict { stored, failed };
    // Runs on the main thread after the change; the key that changed.
    using ChangeHandler = std::function<void(const std::string& key)>;

    virtual ~Defaults() = default;
    // Nothing when the key is unset or holds a value of no known type.
    [[nodiscard]] virtual std::optional<SettingValue> value(std::string_view key) const = 0;
    // On disk when it returns.
    [[nodiscard]] virtual Verdict setValue(std::string_view key, const SettingValue& value) = 0;
    [[nodiscard]] virtual Verdict removeValue(std::string_view key) = 0;
    // Also for changes that another process made.
    virtual Subscription observe(ChangeHandler handler) = 0;

    template <typename T>
    [[nodiscard]] std::optional<T> get(std::string_view key) const {
        if (auto stored = value(key))
            if (auto* typed = std::get_if<T>(&*stored)) return std::move(*typed);
        return std::nullopt;
    }
};

}  // namespace vantor
