#include "browser/WebViewStore.h"

#include <utility>

namespace vantor {

void WebViewStore::setWebView(std::unique_ptr<WebPage> page) {
    observers_.clear();
    webView_ = std::move(page);
    if (!webView_) return;
    webView_->setDrawsBackground(false);
    for (std::size_t index = 0; index < WebPage::propertyCount; ++index)
        observers_.push_back(webView_->observePrior(static_cast<WebPage::Property>(index), [this] {
            if (willChange_) willChange_();
        }));
}

}  // namespace vantor
