#pragma once
// Asks the game's web API whether it takes a key, and where the key shows no whole account, which permission it lacks.
// Main thread. The key is in the address, as the API's way of asking wants it, and goes nowhere else.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/MainThread.h"
#include "platform/UrlSession.h"

namespace vantor {

// What a key must be allowed to show.
inline constexpr std::array<std::string_view, 2> neededPermissions{"account", "progression"};

class ApiKeyCheck {
public:
    enum class Verdict { accepted, invalid, lacksPermission, noData };
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
    // Of the key that lacked some; empty where the API did not say which.
    [[nodiscard]] const std::vector<std::string>& missingPermissions() const { return missing_; }
    // The answer under way is told to nobody.
    void forget() { newest_ = std::make_shared<const bool>(true); }

private:
    using Answered = std::function<void(const std::optional<std::string>& body)>;
    // What the path answers for the key, on the main thread, unless it is forgotten by then.
    void ask(std::string url, Answered answered);
    void askPermissions(const std::string& key, const Told& told);
    void tell(Verdict verdict, const Told& told) const;

    Needs needs_;
    std::vector<std::string> missing_;
    // Held here alone: the answer to an older check, or one after the end, finds its own gone.
    std::shared_ptr<const bool> newest_;
};

}  // namespace vantor
