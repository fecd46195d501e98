#pragma once
// The embedded page before, while and after its engine exists: the engine is made at the first load. Keeps the observed
// values itself, announces each change before it makes it, once. Main thread.

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "base/Notice.h"
#include "platform/WebEngine.h"
#include "platform/WebPage.h"

namespace vantor {

class LazyWebPage final : public WebPage {
public:
    // Nothing when the engine cannot be had; asked again at the next load.
    using MakeEngine = std::function<std::unique_ptr<WebEngine>()>;

    explicit LazyWebPage(MakeEngine makeEngine) : makeEngine_(std::move(makeEngine)) {}

    void setDrawsBackground(bool draws) override;
    void load(const std::string& url, int timeoutSeconds) override;
    void goBack() override;
    void goForward() override;
    void addUserScript(const std::string& source) override;

    [[nodiscard]] std::optional<std::string> title() const override { return state_.title; }
    [[nodiscard]] std::optional<std::string> url() const override { return state_.url; }
    [[nodiscard]] bool isLoading() const override { return state_.loading; }
    [[nodiscard]] double estimatedProgress() const override { return state_.estimatedProgress; }
    [[nodiscard]] bool hasOnlySecureContent() const override { return state_.hasOnlySecureContent; }
    [[nodiscard]] bool hasServerTrust() const override { return state_.hasServerTrust; }
    [[nodiscard]] bool canGoBack() const override { return state_.canGoBack; }
    [[nodiscard]] bool canGoForward() const override { return state_.canGoForward; }

    Subscription observePrior(Property property, std::function<void()> handler) override;

    [[nodiscard]] Engine engine() const override { return engineState_; }
    void onEngine(std::function<void()> handler) override { engineChanged_ = std::move(handler); }

private:
    void update(const WebState& next);
    template <typename Value>
    void change(Property property, Value WebState::* member, const WebState& next);
    void setEngine(Engine state);

    MakeEngine makeEngine_;
    std::unique_ptr<WebEngine> engine_;
    Engine engineState_ = Engine::notWanted;
    std::function<void()> engineChanged_;
    WebState state_;
    bool drawsBackground_ = true;
    std::vector<std::string> scriptsBeforeEngine_;
    std::array<Notice, propertyCount> willChange_;
};

}  // namespace vantor
