// The page on the system's web view: when its changes are told, what it is asked for, and what a page may do.

#include <gmock/gmock.h>

#include <memory>

#include "Mac.h"
#include "platform/Keys.h"
#include "platform/macos/WebKitPage.h"

namespace vantor {
namespace {

using macdouble::done;
using macdouble::mac;
using testing::ElementsAre;
using testing::IsEmpty;
using Property = WebPage::Property;

class WebKitPageTest : public testing::Test {
protected:
    WKNavigationAction* action(NSString* url, WKNavigationType type, WKFrameInfo* frame) {
        WKNavigationAction* const made = [[[WKNavigationAction alloc] init] autorelease];
        [made setRequest:[NSURLRequest requestWithURL:[NSURL URLWithString:url]]];
        [made setNavigationType:type];
        [made setTargetFrame:frame];
        return made;
    }
    // How often it is allowed, and how often answered.
    std::pair<int, int> decide(NSString* url, WKNavigationType type, WKFrameInfo* frame) {
        __block std::pair<int, int> answers;
        [[view navigationDelegate] webView:view
            decidePolicyForNavigationAction:action(url, type, frame)
                            decisionHandler:^(WKNavigationActionPolicy policy) {
                              answers.first += policy == WKNavigationActionPolicyAllow;
                              ++answers.second;
                            }];
        return answers;
    }

    std::vector<std::string> outside;
    std::unique_ptr<WebKitPage> page =
        std::make_unique<WebKitPage>([this](const std::string& address) { outside.push_back(address); });
    WKWebView* view = static_cast<WKWebView*>(page->nativeView());
};

TEST_F(WebKitPageTest, TellsOfEachOfTheEightOnceWhileTheOldValueStillStands) {
    int trust = 0;
    const std::function<void()> changes[] = {
        [&] { [view setTitle:@"Wiki"]; },
        [&] { [view changeURL:[NSURL URLWithString:@"https://wiki.test/a%20b"]]; },
        [&] { [view setLoading:YES]; },
        [&] { [view setEstimatedProgress:0.5]; },
        [&] { [view setHasOnlySecureContent:YES]; },
        [&] { [view changeServerTrust:reinterpret_cast<SecTrustRef>(&trust)]; },
        [&] { [view setCanGoBack:YES]; },
        [&] { [view setCanGoForward:YES]; },
    };
    const auto values = [&] {
        return std::tuple(page->title(), page->url(), page->isLoading(), page->estimatedProgress(),
                          page->hasOnlySecureContent(), page->hasServerTrust(), page->canGoBack(),
                          page->canGoForward());
    };
    std::vector<Subscription> observers;
    std::vector<std::size_t> told;
    auto before = values();
    for (std::size_t index = 0; index < WebPage::propertyCount; ++index)
        observers.push_back(page->observePrior(static_cast<Property>(index), [&, index] {
            told.push_back(index);
            EXPECT_EQ(values(), before) << index;
        }));
    EXPECT_EQ(before, std::tuple(std::nullopt, std::nullopt, false, 0.0, false, false, false, false));
    for (std::size_t index = 0; index < WebPage::propertyCount; ++index) {
        changes[index]();
        EXPECT_NE(values(), before) << index;
        before = values();
    }
    EXPECT_THAT(told, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_EQ(before, std::tuple("Wiki", "https://wiki.test/a%20b", true, 0.5, true, true, true, true));
}

TEST_F(WebKitPageTest, AnObservationMayEndFromWithinAndOutliveThePage) {
    int heard = 0;
    Subscription once;
    once = page->observePrior(Property::title, [&] {
        once.reset();
        ++heard;
    });
    const auto lasting = page->observePrior(Property::loading, [&] { heard += 10; });
    [view setTitle:@"first"];
    [view setTitle:@"second"];
    EXPECT_EQ(heard, 1);
    page.reset();
    [view setLoading:YES];
    EXPECT_EQ(heard, 11);
    EXPECT_FALSE([view navigationDelegate] || [view UIDelegate]) << "the view does not keep them";
}

TEST_F(WebKitPageTest, AsksTheViewForWhatItIsAskedForAndTellsWhenItsProcessHasGone) {
    std::vector<WebPage::Engine> told;
    page->onEngine([&] { told.push_back(page->engine()); });
    for (int time = 0; time < 2; ++time) [[view navigationDelegate] webViewWebContentProcessDidTerminate:view];
    page->setDrawsBackground(false);
    EXPECT_FALSE([view drawsBackground]);
    page->load("https://wiki.test/index.php?search=a%20b", 60);
    page->load("\xFF", 60);
    EXPECT_THAT(told, ElementsAre(WebPage::Engine::gone, WebPage::Engine::running));
    page->goBack();
    page->goForward();
    page->addUserScript("style();");
    EXPECT_THAT(done(), ElementsAre("load https://wiki.test/index.php?search=a%20b policy 0 timeout 60", "back",
                                    "forward", "script style(); at 1 in all frames"));
}

TEST_F(WebKitPageTest, ShowsWebPagesOnly) {
    WKFrameInfo* const inner = [[[WKFrameInfo alloc] init] autorelease];
    WKFrameInfo* const main = [[[WKFrameInfo alloc] init] autorelease];
    [main setMainFrame:YES];
    const std::pair<int, int> allowed(1, 1);
    const std::pair<int, int> refused(0, 1);
    EXPECT_EQ(decide(@"http://a.test/", WKNavigationTypeOther, main), allowed);
    EXPECT_EQ(decide(@"HTTPS://a.test/", WKNavigationTypeLinkActivated, nil), allowed);
    EXPECT_EQ(decide(@"about:blank", WKNavigationTypeOther, inner), allowed);
    EXPECT_EQ(decide(@"about:blank", WKNavigationTypeOther, main), refused);
    EXPECT_EQ(decide(@"about:blank", WKNavigationTypeOther, nil), refused);
    EXPECT_EQ(decide(@"file:///etc/passwd", WKNavigationTypeLinkActivated, inner), refused);
    EXPECT_EQ(decide(@"mailto:a@b.test", WKNavigationTypeOther, main), refused);
    EXPECT_THAT(outside, IsEmpty());
    EXPECT_EQ(decide(@"mailto:a@b.test", WKNavigationTypeLinkActivated, main), refused);
    EXPECT_THAT(outside, ElementsAre("mailto:a@b.test"));

    for (NSString* address in @[ @"https://new.test/", @"file:///etc/passwd" ])
        EXPECT_FALSE([[view UIDelegate] webView:view
                 createWebViewWithConfiguration:[view configuration]
                            forNavigationAction:action(address, WKNavigationTypeLinkActivated, nil)
                                 windowFeatures:nil]);
    EXPECT_THAT(done(), ElementsAre("load https://new.test/ policy 0 timeout 60"));
}

TEST_F(WebKitPageTest, ServesTheEditKeysWhileItHasTheKeyboardAndIsClickedThroughItsFades) {
    NSWindow* const window = [[[NSWindow alloc] init] autorelease];
    [view setWindow:window];
    NSView* const fades = [[view subviews] lastObject];
    EXPECT_EQ([fades autoresizingMask], 18U) << "as large as the page";
    [fades setFrame:NSMakeRect(0, 0, 600, 400)];
    EXPECT_FALSE([fades hitTest:NSMakePoint(5, 5)]);
    constexpr CGKeyCode keys[] = {7, 8, 9, 0};
    const auto pressAll = [&](NSResponder* keyboard, ModifierFlags flags) {
        [window setFirstResponder:keyboard];
        int taken = 0;
        for (const CGKeyCode key : keys) taken += mac().pressIn(view, key, flags);
        return taken;
    };
    // A field of the toolkit's gets its keys itself.
    EXPECT_EQ(pressAll([[[NSView alloc] initWithFrame:NSZeroRect] autorelease], modifier::command), 0);
    EXPECT_EQ(pressAll(window, modifier::command) + pressAll(nil, modifier::command), 0);
    EXPECT_EQ(pressAll(view, 0) + pressAll(view, modifier::command | modifier::shift), 0);
    EXPECT_FALSE(mac().pressIn(view, 23, modifier::command));
    EXPECT_THAT(done(), IsEmpty());
    for (NSView* each in @[ view, fades ]) {
        EXPECT_EQ(pressAll(each, modifier::command | modifier::nonCoalesced), 4);
        EXPECT_THAT(done(), ElementsAre("cut:", "copy:", "paste:", "selectAll:"));
    }
}

}  // namespace
}  // namespace vantor
