#pragma once
// Owner of the one embedded web page, which stays alive while views come and go. It restyles every page that it loads
// and announces the page's changes. It exists from the start; the page's engine comes with the first load. Main thread.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Notice.h"
#include "platform/WebPage.h"

namespace vantor {

class WebViewStore {
public:
    // The style sheet's bytes, read at each load; nothing: pages stay as they are.
    using StyleSheet = std::function<std::optional<std::string>()>;

    WebViewStore(std::unique_ptr<WebPage> page, StyleSheet styleSheet);

    // Takes another page and observes its eight values instead of the old one's.
    void setWebView(std::unique_ptr<WebPage> page);
    [[nodiscard]] WebPage& webView() const { return *webView_; }
    [[nodiscard]] std::size_t observerCount() const { return observers_.size(); }

    // Each load adds one more copy of the style script to the page, and none is ever removed. An invalid address
    // stops the program: callers build theirs from fixed prefixes and encoded terms.
    void load(const std::string& address);

    // Runs before each change of an observed value.
    Subscription onWillChange(Notice::Handler handler) { return willChange_.observe(std::move(handler)); }

private:
    std::unique_ptr<WebPage> webView_;
    StyleSheet styleSheet_;
    std::vector<Subscription> observers_;
    Notice willChange_;
};

}  // namespace vantor
