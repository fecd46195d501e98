#include "browser/WebViewStore.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "browser/StyleScript.h"
#include "browser/WebAddresses.h"

namespace vantor {

namespace {

constexpr int loadTimeoutSeconds = 60;

}  // namespace

WebViewStore::WebViewStore(std::unique_ptr<WebPage> page, StyleSheet styleSheet) : styleSheet_(std::move(styleSheet)) {
    page->setDrawsBackground(false);
    setWebView(std::move(page));
}

void WebViewStore::setWebView(std::unique_ptr<WebPage> page) {
    std::vector<Subscription> observers;
    for (std::size_t index = 0; index < WebPage::propertyCount; ++index)
        observers.push_back(
            page->observePrior(static_cast<WebPage::Property>(index), [this] { willChange_.announce(); }));
    observers_ = std::move(observers);
    webView_ = std::move(page);
}

void WebViewStore::load(const std::string& address) {
    if (!isAddress(address)) {
        std::fputs("vantor: an address of a page cannot be formed\n", stderr);
        std::abort();
    }
    webView_->load(address, loadTimeoutSeconds);
    if (const auto sheet = styleSheet_()) webView_->addUserScript(styleScript(*sheet));
}

}  // namespace vantor
