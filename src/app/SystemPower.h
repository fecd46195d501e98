#pragma once
// What Vantor needs on this machine, as the settings panel shows it. A value.

#include <functional>
#include <string>
#include <vector>

#include "accounts/AccountsCredentials.h"

namespace vantor {

struct SystemPower {
    std::string what;
    bool have = false;
    std::string sentence;  // what is found, or what to do
    // Has the system put its own question to the player; nothing where there is none to put.
    std::function<void()> ask = {};

    bool operator==(const SystemPower& other) const {
        return what == other.what && have == other.have && sentence == other.sentence && !ask == !other.ask;
    }
};

// In plain words, of what the examination of the machine calls by its name, such as "raw keys". An unknown name stands
// for itself.
[[nodiscard]] SystemPower plainPower(const std::string& name, bool present, const std::string& advice);

// Whether the logins are where they belong, in place of what the machine says of its keyring.
[[nodiscard]] SystemPower keyringPower(const AccountsCredentials& credentials);

}  // namespace vantor
