#pragma once
// The engine behind an embedded page. It reports its state after the fact; the page above it makes announced changes of
// that. Main thread.

#include <functional>
#include <optional>
#include <string>

namespace vantor {

struct WebState {
    std::optional<std::string> title;
    std::optional<std::string> url;
    bool loading = false;
    double estimatedProgress = 0;  // 0 to 1
    bool hasOnlySecureContent = false;
    bool hasServerTrust = false;
    bool canGoBack = false;
    bool canGoForward = false;

    bool operator==(const WebState&) const = default;
};

class WebEngine {
public:
    struct Observer {
        std::function<void(const WebState&)> changed;
        // The process that drew the page has ended; the next load starts another.
        std::function<void()> gone;
    };

    virtual ~WebEngine() = default;
    virtual void setObserver(Observer observer) = 0;
    virtual void setDrawsBackground(bool draws) = 0;
    virtual void load(const std::string& url, int timeoutSeconds) = 0;
    virtual void goBack() = 0;
    virtual void goForward() = 0;
    virtual void addUserScript(const std::string& source) = 0;
};

}  // namespace vantor
