#pragma once
// Asks the game's web API whether it takes a key. Main thread; the answer is read on the session queue and told on the
// main thread. The key is in the address, as the API's way of asking wants it, and goes nowhere else.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/MainThread.h"
#include "platform/UrlSession.h"

namespace vantor {

class ApiKeyCheck {
public:
    enum class Verdict { accepted, invalid, noData };
    using Told = std::function<void(Verdict verdict)>;

    struct Needs {
        UrlSession& session;
        MainThread& mainThread;
        std::string apiHost;
        std::function<void(const std::string& line)> printLine;  // main thread
    };

    // The key stands in the address exactly as it is typed; nothing when that makes no address.
    [[nodiscard]] static std::optional<std::string> address(const std::string& apiHost, const std::string& key);

    explicit ApiKeyCheck(Needs needs) : needs_(std::move(needs)) {}
    ApiKeyCheck(const ApiKeyCheck&) = delete;
    ApiKeyCheck& operator=(const ApiKeyCheck&) = delete;

    // False when nothing was asked. Only the newest check is told of.
    bool check(const std::string& key, Told told);
    // The answer under way is told to nobody.
    void forget() { newest_ = std::make_shared<const bool>(true); }

private:
    Needs needs_;
    // Held here alone: the answer to an older check, or one after the end, finds its own gone.
    std::shared_ptr<const bool> newest_;
};

}  // namespace vantor
