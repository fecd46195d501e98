#pragma once
// The system's store of secrets: one item is found by its class and its account attribute, and by nothing else. Main
// thread. Nothing here waits: an answer comes on the main thread, once, perhaps before the call returns.

#include <chrono>
#include <functional>
#include <string>

namespace vantor {

struct KeychainItem {
    std::string itemClass;
    std::string account;

    bool operator==(const KeychainItem&) const = default;
};

enum class KeychainStatus {
    done,
    notFound,
    locked,       // there, and nobody was asked to open it
    refused,      // the player, or the system, said no
    unavailable,  // no store here, or it does not answer
};

class Keychain {
public:
    enum class Prompt { never, allowed };
    using Copied = std::function<void(KeychainStatus status, const std::string& data)>;
    using Answered = std::function<void(KeychainStatus status)>;

    virtual ~Keychain() = default;
    // The data of one matching item. A locked store is opened first where the player may be asked for it; after that
    // it can also be written.
    virtual void copyMatching(const KeychainItem& item, Prompt prompt, Copied answer) = 0;
    // Removes every matching item, then adds one, with nothing in between. May ask the player to open the store. Where
    // removing is refused nothing is added.
    virtual void replace(const KeychainItem& item, const std::string& data, Answered answer) = 0;
    // For the end of the program, dispatching nothing: waits until what was asked so far is done. False when the time
    // ran out.
    [[nodiscard]] virtual bool finish(std::chrono::milliseconds atMost) = 0;
};

}  // namespace vantor
