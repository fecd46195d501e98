#pragma once
// Owner of the one embedded web page, which stays alive while views come and go. It exists from the start; its page
// comes with the engine. Main thread.

#include <functional>
#include <memory>
#include <vector>

#include "platform/WebPage.h"

namespace vantor {

class WebViewStore {
public:
    // Takes another page and observes its eight values instead of the old one's.
    void setWebView(std::unique_ptr<WebPage> page);
    // Nothing while the engine has not been loaded.
    [[nodiscard]] WebPage* webView() const { return webView_.get(); }
    [[nodiscard]] std::size_t observerCount() const { return observers_.size(); }

    // Runs before each change of an observed value.
    void onWillChange(std::function<void()> handler) { willChange_ = std::move(handler); }

private:
    std::unique_ptr<WebPage> webView_;
    std::vector<Subscription> observers_;
    std::function<void()> willChange_;
};

}  // namespace vantor
