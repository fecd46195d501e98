#pragma once
// A page that remembers what was asked of it, in order, and whose values a test changes as an engine would: announced,
// then set. One thread.

#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/WebEngine.h"
#include "platform/WebPage.h"

namespace vantor {

class FakeWebPage final : public WebPage {
public:
    void setDrawsBackground(bool draws) override { asked.push_back(draws ? "background" : "no background"); }
    void load(const std::string& url, int timeoutSeconds) override {
        asked.push_back("load " + url + " " + std::to_string(timeoutSeconds));
    }
    void goBack() override { asked.emplace_back("back"); }
    void goForward() override { asked.emplace_back("forward"); }
    void addUserScript(const std::string& source) override { scripts.push_back(source); }

    [[nodiscard]] std::optional<std::string> title() const override { return state.title; }
    [[nodiscard]] std::optional<std::string> url() const override { return state.url; }
    [[nodiscard]] bool isLoading() const override { return state.loading; }
    [[nodiscard]] double estimatedProgress() const override { return state.estimatedProgress; }
    [[nodiscard]] bool hasOnlySecureContent() const override { return state.hasOnlySecureContent; }
    [[nodiscard]] bool hasServerTrust() const override { return state.hasServerTrust; }
    [[nodiscard]] bool canGoBack() const override { return state.canGoBack; }
    [[nodiscard]] bool canGoForward() const override { return state.canGoForward; }

    Subscription observePrior(Property property, std::function<void()> handler) override {
        const auto key = std::pair(property, next_++);
        registered.push_back(property);
        handlers_->emplace(key, std::move(handler));
        return Subscription([handlers = handlers_, key] { handlers->erase(key); });
    }

    [[nodiscard]] Engine engine() const override { return Engine::running; }
    void onEngine(std::function<void()> handler) override { engineChanged = std::move(handler); }

    void announce(Property property) {
        const auto handlers = *handlers_;
        for (const auto& [key, handler] : handlers)
            if (key.first == property) handler();
    }

    WebState state;
    std::function<void()> engineChanged;
    std::vector<std::string> asked;
    std::vector<std::string> scripts;
    std::vector<Property> registered;

private:
    using Handlers = std::map<std::pair<Property, int>, std::function<void()>>;
    std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
    int next_ = 0;
};

}  // namespace vantor
