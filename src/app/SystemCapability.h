#pragma once
// What Vantor needs on this machine, as the settings panel shows it. A value.

#include <functional>
#include <string>
#include <vector>

#include "accounts/AccountsCredentials.h"
#include "platform/Defaults.h"

namespace vantor {

struct SystemCapability {
    std::string what;
    bool have = false;
    std::string sentence;  // what is found, or what to do
    // Has the system put its own question to the player; nothing where there is none to put.
    std::function<void()> ask = {};

    bool operator==(const SystemCapability& other) const {
        return what == other.what && have == other.have && sentence == other.sentence && !ask == !other.ask;
    }
};

// In plain words, of what the examination of the machine calls by its name, such as "raw keys". An unknown name stands
// for itself.
[[nodiscard]] SystemCapability plainCapability(const std::string& name, bool present, const std::string& advice);

// Whether clicks reach the overlay by the settings too, in place of what the machine says of them. May be allowed by
// the player where Vantor itself is not among the enabled applications.
[[nodiscard]] SystemCapability clicksCapability(SystemCapability machine, Defaults& defaults);

// Whether the logins are where they belong, in place of what the machine says of its keyring.
[[nodiscard]] SystemCapability keyringCapability(const AccountsCredentials& credentials);

}  // namespace vantor
