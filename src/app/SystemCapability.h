#pragma once
// What Vantor needs on this machine, as the settings panel shows it. A value.

#include <functional>
#include <string>
#include <vector>

#include "accounts/AccountsCredentials.h"
#include "platform/Capability.h"

namespace vantor {

struct SystemCapability {
    std::string what;
    bool have = false;
    std::string sentence;  // what is found, or what to do
    // Makes the system ask the player to allow it; nothing where the system has no such question.
    std::function<void()> ask = {};

    bool operator==(const SystemCapability& other) const {
        return what == other.what && have == other.have && sentence == other.sentence && !ask == !other.ask;
    }
};

// In the field's words, as `--doctor` prints it, such as "raw keys".
[[nodiscard]] std::string capabilityName(CapabilityKind kind);
// In plain words.
[[nodiscard]] SystemCapability plainCapability(const Capability& capability);

// Whether the logins are where they belong, in place of what the machine says of its keyring.
[[nodiscard]] SystemCapability keyringCapability(const AccountsCredentials& credentials);

// All of them, each with the system's question to the player, if there is one.
[[nodiscard]] std::vector<SystemCapability> systemCapabilities(
    const std::vector<Capability>& found, const AccountsCredentials& credentials,
    const std::function<std::function<void()>(CapabilityKind)>& question);

}  // namespace vantor
