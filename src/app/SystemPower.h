#pragma once
// What Vantor needs on this machine, as the settings panel shows it. A value.

#include <string>
#include <vector>

#include "accounts/AccountsCredentials.h"

namespace vantor {

struct SystemPower {
    std::string what;
    bool have = false;
    std::string sentence;  // what is found, or what to do

    bool operator==(const SystemPower&) const = default;
};

// In plain words, of what the examination of the machine calls by its name, such as "raw keys". An unknown name stands
// for itself.
[[nodiscard]] SystemPower plainPower(const std::string& name, bool present, const std::string& advice);

// Whether the logins are where they belong, in place of what the machine says of its keyring.
[[nodiscard]] SystemPower keyringPower(const AccountsCredentials& credentials);

}  // namespace vantor
