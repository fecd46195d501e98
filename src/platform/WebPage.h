#pragma once
// One embedded web page. Main thread; the observed values change on it as well.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "base/Subscription.h"

namespace vantor {

class WebPage {
public:
    // The observed values, in the order of their registration.
    enum class Property {
        title,
        url,
        loading,
        estimatedProgress,
        hasOnlySecureContent,
        serverTrust,
        canGoBack,
        canGoForward,
    };
    static constexpr std::size_t propertyCount = 8;

    virtual ~WebPage() = default;

    virtual void setDrawsBackground(bool draws) = 0;
    // Starts loading; the address is valid. `timeoutSeconds` of inactivity.
    virtual void load(const std::string& url, int timeoutSeconds) = 0;
    virtual void goBack() = 0;
    virtual void goForward() = 0;
    // Runs at document end, in every frame, on each later page; a script added twice runs twice.
    virtual void addUserScript(const std::string& source) = 0;

    [[nodiscard]] virtual std::optional<std::string> title() const = 0;
    [[nodiscard]] virtual std::optional<std::string> url() const = 0;
    [[nodiscard]] virtual bool isLoading() const = 0;
    [[nodiscard]] virtual double estimatedProgress() const = 0;  // 0 to 1
    [[nodiscard]] virtual bool hasOnlySecureContent() const = 0;
    [[nodiscard]] virtual bool hasServerTrust() const = 0;
    [[nodiscard]] virtual bool canGoBack() const = 0;
    [[nodiscard]] virtual bool canGoForward() const = 0;

    // Runs before each change of the value, and not after it.
    virtual Subscription observePrior(Property property, std::function<void()> handler) = 0;

    // What stands behind the page. Gone: it has ended, and the next load starts another.
    enum class Engine { notWanted, running, missing, gone };
    [[nodiscard]] virtual Engine engine() const = 0;
    // After the engine came, failed to come, or went. A later handler replaces the one before.
    virtual void onEngine(std::function<void()> handler) = 0;
};

}  // namespace vantor
