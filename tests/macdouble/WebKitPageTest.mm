// The page on the system's web view: what is asked of the view, when its changes are told, and what a page may do.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "ServiceCalls.h"
#include "WebViewDouble.h"
#include "platform/macos/WebKitPage.h"

namespace vantor {
namespace {

using macdouble::serviceCalls;
using testing::ElementsAre;
using testing::IsEmpty;
using Property = WebPage::Property;

class WebKitPageTest : public testing::Test {
protected:
    WebKitPageTest() {
        page = std::make_unique<WebKitPage>([this](const std::string& address) { outside.push_back(address); });
        view = static_cast<WKWebView*>(page->nativeView());
        serviceCalls().take();
    }
    // As the store does: all eight, in their order.
    void observeAll() {
        for (std::size_t index = 0; index < WebPage::propertyCount; ++index)
            observers.push_back(page->observePrior(static_cast<Property>(index),
                                                   [this, index] { told.push_back(static_cast<Property>(index)); }));
    }
    std::string decide(NSString* url, WKNavigationType type, WKFrameInfo* frame) {
        WKNavigationAction* const action = [[[WKNavigationAction alloc] initWithURL:url type:type
                                                                              frame:frame] autorelease];
        __block std::string answer = "none";
        [[view navigationDelegate] webView:view
            decidePolicyForNavigationAction:action
                            decisionHandler:^(WKNavigationActionPolicy policy) {
                              answer = policy == WKNavigationActionPolicyAllow ? "allow" : "cancel";
                            }];
        return answer;
    }

    std::vector<std::string> outside;
    std::unique_ptr<WebKitPage> page;
    WKWebView* view;
    std::vector<Subscription> observers;
    std::vector<Property> told;
};

TEST_F(WebKitPageTest, ObservesEightKeyPathsInOrderBeforeTheirChangesOnly) {
    observeAll();
    EXPECT_THAT(
        serviceCalls().take(),
        ElementsAre("observe title options 8", "observe URL options 8", "observe loading options 8",
                    "observe estimatedProgress options 8", "observe hasOnlySecureContent options 8",
                    "observe serverTrust options 8", "observe canGoBack options 8", "observe canGoForward options 8"));
    [view setTitle:@"Wiki"];
    [view changeURL:[NSURL URLWithString:@"https://wiki.test/a%20b"]];
    [view setLoading:YES];
    [view setEstimatedProgress:0.5];
    [view setHasOnlySecureContent:YES];
    int trust = 0;
    [view changeServerTrust:reinterpret_cast<SecTrustRef>(&trust)];
    [view setCanGoBack:YES];
    [view setCanGoForward:YES];
    // Once each: what follows a change is not told.
    EXPECT_THAT(told, ElementsAre(Property::title, Property::url, Property::loading, Property::estimatedProgress,
                                  Property::hasOnlySecureContent, Property::serverTrust, Property::canGoBack,
                                  Property::canGoForward));
    EXPECT_EQ(page->title(), "Wiki");
    EXPECT_EQ(page->url(), "https://wiki.test/a%20b");
    EXPECT_TRUE(page->isLoading());
    EXPECT_EQ(page->estimatedProgress(), 0.5);
    EXPECT_TRUE(page->hasOnlySecureContent() && page->hasServerTrust());
    EXPECT_TRUE(page->canGoBack() && page->canGoForward());
}

TEST_F(WebKitPageTest, TellsOfAChangeWhileTheOldValueStillStands) {
    EXPECT_EQ(page->title(), std::nullopt);
    EXPECT_EQ(page->url(), std::nullopt);
    std::vector<std::optional<std::string>> seen;
    const auto observer = page->observePrior(Property::title, [&] { seen.push_back(page->title()); });
    [view setTitle:@"one"];
    [view setTitle:@"two"];
    EXPECT_THAT(seen, ElementsAre(std::nullopt, "one"));
    EXPECT_EQ(page->title(), "two");
}

TEST_F(WebKitPageTest, EndsAnObservationWithItsSubscriptionEvenFromWithinAndAfterThePage) {
    observeAll();
    serviceCalls().take();
    observers.erase(observers.begin());
    EXPECT_THAT(serviceCalls().take(), ElementsAre("unobserve title"));
    [view setTitle:@"unheard"];
    EXPECT_THAT(told, IsEmpty());

    int heard = 0;
    Subscription once;
    once = page->observePrior(Property::title, [&] {
        ++heard;
        once.reset();
    });
    @autoreleasepool {
        [view setTitle:@"first"];
        [view setTitle:@"second"];
    }
    EXPECT_EQ(heard, 1);
    serviceCalls().take();
    @autoreleasepool {
        page.reset();
    }
    EXPECT_THAT(serviceCalls().take(), IsEmpty()) << "the observations still hold the view";
    @autoreleasepool {
        observers.clear();
    }
    EXPECT_EQ(serviceCalls().take().back(), "view gone");
}

TEST_F(WebKitPageTest, LoadsAndMovesAsAsked) {
    page->setDrawsBackground(false);
    page->load("https://wiki.test/index.php?search=a%20b", 60);
    page->goBack();
    page->goForward();
    EXPECT_THAT(serviceCalls().take(), ElementsAre("setValue:0 forKey:drawsBackground",
                                                   "load https://wiki.test/index.php?search=a%20b policy 0 timeout 60",
                                                   "goBack", "goForward"));
}

TEST_F(WebKitPageTest, AddsEachScriptForTheEndOfTheDocumentInAllFrames) {
    page->addUserScript("style();");
    page->addUserScript("style();");
    NSArray* const scripts = [[[view configuration] userContentController] userScripts];
    ASSERT_EQ([scripts count], 2U);
    for (WKUserScript* script in scripts) {
        EXPECT_STREQ([[script source] UTF8String], "style();");
        EXPECT_EQ([script injectionTime], 1);
        EXPECT_FALSE([script isForMainFrameOnly]);
    }
}

TEST_F(WebKitPageTest, ShowsWebPagesOnly) {
    WKFrameInfo* const main = [[[WKFrameInfo alloc] initWithMainFrame:YES] autorelease];
    WKFrameInfo* const inner = [[[WKFrameInfo alloc] initWithMainFrame:NO] autorelease];
    EXPECT_EQ(decide(@"https://a.test/", WKNavigationTypeOther, main), "allow");
    EXPECT_EQ(decide(@"HTTP://a.test/", WKNavigationTypeLinkActivated, nil), "allow");
    EXPECT_EQ(decide(@"about:blank", WKNavigationTypeOther, inner), "allow");
    EXPECT_EQ(decide(@"about:blank", WKNavigationTypeOther, main), "cancel");
    EXPECT_EQ(decide(@"file:///etc/passwd", WKNavigationTypeLinkActivated, main), "cancel");
    EXPECT_EQ(decide(@"mailto:a@b.test", WKNavigationTypeOther, main), "cancel");
    EXPECT_THAT(outside, IsEmpty());
    EXPECT_EQ(decide(@"mailto:a@b.test", WKNavigationTypeLinkActivated, main), "cancel");
    EXPECT_THAT(outside, ElementsAre("mailto:a@b.test"));

    serviceCalls().take();
    for (NSString* address in @[ @"https://new.test/", @"file:///etc/passwd" ]) {
        WKNavigationAction* const action = [[[WKNavigationAction alloc] initWithURL:address
                                                                               type:WKNavigationTypeLinkActivated
                                                                              frame:nil] autorelease];
        EXPECT_EQ([[view UIDelegate] webView:view
                      createWebViewWithConfiguration:[view configuration]
                                 forNavigationAction:action
                                      windowFeatures:nil],
                  nil);
    }
    EXPECT_THAT(serviceCalls().take(), ElementsAre("load https://new.test/ policy 0 timeout 60"));
}

TEST_F(WebKitPageTest, FadesAtItsEdgesAndIsClickedThroughThem) {
    [view setFrame:NSMakeRect(10, 10, 600, 400)];
    ASSERT_EQ([[view subviews] count], 1U);
    NSView* const fades = [[view subviews] objectAtIndex:0];
    EXPECT_EQ([fades hitTest:NSMakePoint(5, 5)], nil);
    [fades drawRect:NSZeroRect];
    EXPECT_THAT(serviceCalls().take(),
                ElementsAre("gradient 59-0 in 0,382 600x18 to 270", "gradient 59-0 in 0,0 600x18 to 90",
                            "gradient 59-0 in 0,0 18x400 to 0", "gradient 59-0 in 582,0 18x400 to 180"));
}

TEST_F(WebKitPageTest, TellsWhenItsProcessHasGone) {
    int changes = 0;
    page->onEngine([&] { ++changes; });
    [[view navigationDelegate] webViewWebContentProcessDidTerminate:view];
    [[view navigationDelegate] webViewWebContentProcessDidTerminate:view];
    EXPECT_EQ(page->engine(), WebPage::Engine::gone);
    EXPECT_EQ(changes, 1);
    page->load("https://wiki.test/", 60);
    EXPECT_EQ(page->engine(), WebPage::Engine::running);
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace vantor
