#pragma once
// The keychain on the desktop's Secret Service (org.freedesktop.secrets). All of it belongs to the main thread; the
// service is asked on a worker thread, one question after the other, so that neither a service that does not answer nor
// a prompt that nobody answers holds up anything else. Needs no main loop.

#include <chrono>
#include <memory>

#include "base/MainThread.h"
#include "platform/Keychain.h"

namespace vantor {

class SecretServiceKeychain final : public Keychain {
public:
    // How long a question may take, and how long where the player may have to type a password.
    struct Patience {
        std::chrono::milliseconds answer = std::chrono::seconds(5);
        std::chrono::milliseconds prompt = std::chrono::minutes(2);
    };

    explicit SecretServiceKeychain(MainThread& mainThread) : SecretServiceKeychain(mainThread, Patience()) {}
    SecretServiceKeychain(MainThread& mainThread, Patience patience);
    // Breaks off the question under way and drops the rest.
    ~SecretServiceKeychain() override;

    void copyMatching(const KeychainItem& item, Prompt prompt, Copied answer) override;
    void replace(const KeychainItem& item, const std::string& data, Answered answer) override;
    [[nodiscard]] bool finish(std::chrono::milliseconds atMost) override;

private:
    class Worker;

    MainThread& mainThread_;
    Patience patience_;
    std::unique_ptr<Worker> worker_;
};

}  // namespace vantor
