#include "platform/macos/WebKitPolicy.h"

#include <utility>

#include "platform/macos/FoundationText.h"

namespace vantor {

namespace {

bool hasScheme(NSURL* url, NSString* scheme) { return [[[url scheme] lowercaseString] isEqual:scheme]; }

bool isWeb(NSURL* url) { return hasScheme(url, @"https") || hasScheme(url, @"http"); }

// Frames of a page may also be empty or written by its scripts.
bool isInnerFrame(WKFrameInfo* frame) { return frame && ![frame isMainFrame]; }

}  // namespace

}  // namespace vantor

@implementation VantorWebPolicy
- (id)initWithOpenOutside:(std::function<void(const std::string&)>)openOutside gone:(std::function<void()>)gone {
    self = [super init];
    if (self) {
        openOutside_ = new std::function<void(const std::string&)>(std::move(openOutside));
        gone_ = new std::function<void()>(std::move(gone));
    }
    return self;
}

- (void)dealloc {
    delete openOutside_;
    delete gone_;
    [super dealloc];
}

- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)action
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler {
    (void)webView;
    NSURL* const url = [[action request] URL];
    if (vantor::isWeb(url) || (vantor::isInnerFrame([action targetFrame]) && vantor::hasScheme(url, @"about"))) {
        decisionHandler(WKNavigationActionPolicyAllow);
        return;
    }
    if ([action navigationType] == WKNavigationTypeLinkActivated && vantor::hasScheme(url, @"mailto"))
        (*openOutside_)(vantor::plainText([url absoluteString]));
    decisionHandler(WKNavigationActionPolicyCancel);
}

- (WKWebView*)webView:(WKWebView*)webView
    createWebViewWithConfiguration:(WKWebViewConfiguration*)configuration
               forNavigationAction:(WKNavigationAction*)action
                    windowFeatures:(WKWindowFeatures*)windowFeatures {
    (void)configuration, (void)windowFeatures;
    if (vantor::isWeb([[action request] URL])) (void)[webView loadRequest:[action request]];
    return nil;
}

- (void)webViewWebContentProcessDidTerminate:(WKWebView*)webView {
    (void)webView;
    (*gone_)();
}
@end
