#pragma once
// A control's tie to one setting, with the default of whoever reads it. A value of another type reads as the default.
// Main thread; the store outlives it.

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Defaults.h"

namespace vantor {

template <typename T>
class SettingBinding {
public:
    SettingBinding(Defaults& defaults, std::string_view key, T byDefault)
        : defaults_(defaults), key_(key), byDefault_(std::move(byDefault)) {}

    [[nodiscard]] T value() const { return defaults_.get<T>(key_).value_or(byDefault_); }
    // On disk when it returns; a failure is the store's to tell.
    void set(const T& value) { (void)defaults_.setValue(key_, value); }
    // Runs after each change of the setting, wherever it was made, for as long as this binding lives.
    void observe(std::function<void(const T&)> handler) {
        changes_ = defaults_.observe([this, handler = std::move(handler)](const std::string& key) {
            if (key == key_) handler(value());
        });
    }

private:
    Defaults& defaults_;
    std::string key_;
    T byDefault_;
    Subscription changes_;
};

}  // namespace vantor
