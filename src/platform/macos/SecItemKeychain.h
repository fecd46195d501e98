#pragma once
// The user's keychain, asked through the system's item calls. All of it belongs to the main thread; the keychain is
// asked on the queue, one question after the other, because the system may ask the player first and answers when it
// has. A queue of its own: nothing else may wait for that.

#include <memory>

#include "base/MainThread.h"
#include "base/TaskQueue.h"
#include "platform/Keychain.h"

namespace vantor {

class SecItemKeychain final : public Keychain {
public:
    SecItemKeychain(TaskQueue& queue, MainThread& mainThread);
    ~SecItemKeychain() override;

    // Whether the player is asked is the system's to decide, by who made the item: the prompt does not matter here.
    void copyMatching(const KeychainItem& item, Prompt prompt, Copied answer) override;
    void replace(const KeychainItem& item, const std::string& data, Answered answer) override;
    [[nodiscard]] bool finish(std::chrono::milliseconds atMost) override;

private:
    struct Pending;

    TaskQueue& queue_;
    MainThread& mainThread_;
    std::shared_ptr<Pending> pending_;   // also held by the questions on their way
    std::shared_ptr<const bool> alive_;  // by nobody else
};

}  // namespace vantor
