#pragma once
// The embedded page on the system's web view: its default configuration, nothing but web pages, no bridge from scripts
// to the program. The view keeps the observed values and announces their changes itself; the process that draws pages
// comes with the first load. Main thread.

#include <functional>
#include <memory>
#include <string>

#include "platform/WebPage.h"

namespace vantor {

class WebKitPage final : public WebPage {
public:
    // Gets an address that the player clicked and that is no page, such as that of a mail.
    using OpenOutside = std::function<void(const std::string& address)>;

    explicit WebKitPage(OpenOutside openOutside);
    ~WebKitPage() override;

    void setDrawsBackground(bool draws) override;
    void load(const std::string& url, int timeoutSeconds) override;
    void goBack() override;
    void goForward() override;
    void addUserScript(const std::string& source) override;

    [[nodiscard]] std::optional<std::string> title() const override;
    [[nodiscard]] std::optional<std::string> url() const override;
    [[nodiscard]] bool isLoading() const override;
    [[nodiscard]] double estimatedProgress() const override;
    [[nodiscard]] bool hasOnlySecureContent() const override;
    [[nodiscard]] bool hasServerTrust() const override;
    [[nodiscard]] bool canGoBack() const override;
    [[nodiscard]] bool canGoForward() const override;

    Subscription observePrior(Property property, std::function<void()> handler) override;

    // Running, or gone after the process that draws pages has ended.
    [[nodiscard]] Engine engine() const override;
    void onEngine(std::function<void()> handler) override;
    // The system's view, for the toolkit to place; it stays this page's own.
    [[nodiscard]] void* nativeView() const;

private:
    struct View;

    std::unique_ptr<View> view_;
};

}  // namespace vantor
