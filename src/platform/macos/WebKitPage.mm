#include "platform/macos/WebKitPage.h"

#import <Foundation/Foundation.h>
#import <WebKit/WebKit.h>

#include <array>
#include <utility>

#include "platform/macos/EditableWebView.h"
#include "platform/macos/FoundationText.h"
#include "platform/macos/PageFades.h"
#include "platform/macos/WebKitPolicy.h"

// Hears of one value, before and after each of its changes; tells only of the former.
@interface VantorPriorObserver : NSObject {
    std::function<void()>* handler_;
}
- (id)initWithHandler:(std::function<void()>)handler;
@end

@implementation VantorPriorObserver
- (id)initWithHandler:(std::function<void()>)handler {
    self = [super init];
    if (self) handler_ = new std::function<void()>(std::move(handler));
    return self;
}
- (void)dealloc {
    delete handler_;
    [super dealloc];
}
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
    (void)keyPath, (void)object, (void)context;
    if (![[change objectForKey:NSKeyValueChangeNotificationIsPriorKey] boolValue]) return;
    // A copy: the handler may end this observation.
    const auto handler = *handler_;
    handler();
}
@end

namespace vantor {

namespace {

NSString* keyPathOf(WebPage::Property property) {
    using enum WebPage::Property;
    switch (property) {
        case title:
            return NSStringFromSelector(@selector(title));
        case url:
            return NSStringFromSelector(@selector(URL));
        case loading:
            // Read through isLoading, which is no selector of this key.
            return @"loading";
        case estimatedProgress:
            return NSStringFromSelector(@selector(estimatedProgress));
        case hasOnlySecureContent:
            return NSStringFromSelector(@selector(hasOnlySecureContent));
        case serverTrust:
            return NSStringFromSelector(@selector(serverTrust));
        case canGoBack:
            return NSStringFromSelector(@selector(canGoBack));
        case canGoForward:
            return NSStringFromSelector(@selector(canGoForward));
    }
    return nil;
}

// One observation while it lasts. It keeps the view, so that it may outlive the page.
class Observation {
public:
    Observation(WKWebView* view, NSString* keyPath, std::function<void()> handler)
        : view_([view retain]),
          keyPath_([keyPath copy]),
          observer_([[VantorPriorObserver alloc] initWithHandler:std::move(handler)]) {
        [view_ addObserver:observer_ forKeyPath:keyPath_ options:NSKeyValueObservingOptionPrior context:nullptr];
    }
    ~Observation() {
        @autoreleasepool {
            [view_ removeObserver:observer_ forKeyPath:keyPath_];
            [observer_ autorelease];  // may be the one that is telling
            [keyPath_ release];
            [view_ release];
        }
    }
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

private:
    WKWebView* view_;
    NSString* keyPath_;
    VantorPriorObserver* observer_;
};

}  // namespace

struct WebKitPage::View {
    WKWebView* view;
    VantorWebPolicy* policy;
    bool gone = false;
    std::function<void()> goneChanged;

    explicit View(OpenOutside openOutside) {
        WKWebViewConfiguration* const configuration = [[WKWebViewConfiguration alloc] init];
        view = [[VantorEditableWebView alloc] initWithFrame:NSZeroRect configuration:configuration];
        [configuration release];
        policy = [[VantorWebPolicy alloc] initWithOpenOutside:std::move(openOutside) gone:[this] { setGone(true); }];
        [VantorPageFades layOver:view];
        // Neither delegate is retained by the view.
        [view setNavigationDelegate:policy];
        [view setUIDelegate:policy];
    }
    ~View() {
        [view setNavigationDelegate:nil];
        [view setUIDelegate:nil];
        [policy release];
        [view release];
    }

    void setGone(bool now) {
        if (std::exchange(gone, now) != now && goneChanged) goneChanged();
    }
};

WebKitPage::WebKitPage(OpenOutside openOutside) {
    @autoreleasepool {
        view_ = std::make_unique<View>(std::move(openOutside));
    }
}

WebKitPage::~WebKitPage() {
    @autoreleasepool {
        view_.reset();
    }
}

void WebKitPage::setDrawsBackground(bool draws) {
    @autoreleasepool {
        [view_->view setValue:[NSNumber numberWithBool:draws] forKey:@"drawsBackground"];
    }
}

void WebKitPage::load(const std::string& url, int timeoutSeconds) {
    @autoreleasepool {
        NSString* const address = systemText(url);
        NSURL* const parsed = address ? [NSURL URLWithString:address] : nil;
        if (!parsed) return;
        view_->setGone(false);
        (void)[view_->view loadRequest:[NSURLRequest requestWithURL:parsed
                                                        cachePolicy:NSURLRequestUseProtocolCachePolicy
                                                    timeoutInterval:timeoutSeconds]];
    }
}

void WebKitPage::goBack() {
    @autoreleasepool {
        (void)[view_->view goBack];
    }
}

void WebKitPage::goForward() {
    @autoreleasepool {
        (void)[view_->view goForward];
    }
}

void WebKitPage::addUserScript(const std::string& source) {
    @autoreleasepool {
        NSString* const text = systemText(source);
        if (!text) return;
        WKUserScript* const script = [[WKUserScript alloc] initWithSource:text
                                                            injectionTime:WKUserScriptInjectionTimeAtDocumentEnd
                                                         forMainFrameOnly:NO];
        [[[view_->view configuration] userContentController] addUserScript:script];
        [script release];
    }
}

std::optional<std::string> WebKitPage::title() const {
    @autoreleasepool {
        NSString* const title = [view_->view title];
        return title ? std::optional(plainText(title)) : std::nullopt;
    }
}

std::optional<std::string> WebKitPage::url() const {
    @autoreleasepool {
        NSURL* const url = [view_->view URL];
        return url ? std::optional(plainText([url absoluteString])) : std::nullopt;
    }
}

bool WebKitPage::isLoading() const { return [view_->view isLoading]; }
double WebKitPage::estimatedProgress() const { return [view_->view estimatedProgress]; }
bool WebKitPage::hasOnlySecureContent() const { return [view_->view hasOnlySecureContent]; }
bool WebKitPage::hasServerTrust() const { return [view_->view serverTrust] != nullptr; }
bool WebKitPage::canGoBack() const { return [view_->view canGoBack]; }
bool WebKitPage::canGoForward() const { return [view_->view canGoForward]; }

Subscription WebKitPage::observePrior(Property property, std::function<void()> handler) {
    @autoreleasepool {
        auto observation = std::make_shared<Observation>(view_->view, keyPathOf(property), std::move(handler));
        return Subscription([observation = std::move(observation)]() mutable { observation.reset(); });
    }
}

WebPage::Engine WebKitPage::engine() const { return view_->gone ? Engine::gone : Engine::running; }
void WebKitPage::onEngine(std::function<void()> handler) { view_->goneChanged = std::move(handler); }
void* WebKitPage::nativeView() const { return view_->view; }

}  // namespace vantor
