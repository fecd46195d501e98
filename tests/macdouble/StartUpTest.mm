// The whole start on this backend, and what a player does then: the program's own parts as they are, doubles for the
// system alone. What is asked of the system is compared across all adapters, in its order.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#import <AppKit/NSApplication.h>
#import <AppKit/NSMenuItem.h>
#import <Foundation/Foundation.h>

#include "Backend.h"
#include "DesktopDouble.h"
#include "KeyDouble.h"
#include "KeychainDouble.h"
#include "PrivacyDouble.h"
#include "ServiceCalls.h"
#include "StatusBarDouble.h"
#include "app/AppDelegate.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "platform/macos/PrivacyPermissions.h"

namespace vantor {
namespace {

using macdouble::keychainDouble;
using macdouble::serviceCalls;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Calls = std::vector<std::string>;

constexpr KeyCode keyA = 0;
constexpr KeyCode keyV = 9;
constexpr KeyCode escape = 53;

const Calls shownAroundTheGame{"front icon",    "front emoji", "out main",
                               "front watched", "hide",        "unhide without activation"};

std::string fewKeys(CGKeyCode keyCode, CGEventFlags flags) {
    const bool shift = (flags & modifier::shift) != 0;
    switch (keyCode) {
        case keyA:
            return shift ? "A" : "a";
        case keyV:
            return shift ? "V" : "v";
        case 48:
            return "\t";
        default:
            return "";
    }
}

// Writes into the one record of calls.
struct RecordedWindow final : AppWindow {
    explicit RecordedWindow(AppWindowName which) : name(which) {}
    void orderFront() override { serviceCalls().add("front " + text()); }
    void orderOut() override { serviceCalls().add("out " + text()); }
    [[nodiscard]] std::string text() const {
        return name == AppWindowName::main    ? "main"
               : name == AppWindowName::icon  ? "icon"
               : name == AppWindowName::emoji ? "emoji"
                                              : "watched";
    }

    AppWindowName name;
};

struct RecordedPause final : Pause {
    void wait(std::chrono::microseconds duration) override {
        serviceCalls().add("sleep " + std::to_string(duration.count()));
    }
};

class StartUpTest : public testing::Test {
protected:
    StartUpTest() {
        macdouble::setLayout(fewKeys);
        macdouble::setFrontmost("net.arena.Guild-Wars-2");
        macdouble::setBundle("net.arena.Guild-Wars-2", @"Guild Wars 2");
        macdouble::setImageInBundle(@"vantor", true);
        keychainDouble().forget();
        macdouble::privacyDouble() = {true, kIOHIDAccessTypeGranted};
        (void)serviceCalls().take();
    }
    ~StartUpTest() override {
        delegate.reset();
        backend.reset();
        macdouble::setLayout({});
        macdouble::privacyDouble() = {};
        (void)serviceCalls().take();
    }

    void launch() {
        backend = backend::makeBackend(mainThread, scheduler);
        const TypingServices keys = backend->typing();
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{{defaults,
                                session,
                                queue,
                                mainThread,
                                clock,
                                {"https://api", "qrc:/catalogue"},
                                [](const std::string&) {},
                                [](const std::string&) {}},
                               keys.monitors,
                               keys.poster,
                               keys.layout,
                               keys.workspace,
                               backend->statusItem(),
                               backend->pasteboard(),
                               pause,
                               backend->keychain(),
                               [this] { return backend->makeWebPage(); },
                               [] { return std::string("body {}"); },
                               [](AppWindowName name, AppObserver&) { return std::make_unique<RecordedWindow>(name); }},
            [] { serviceCalls().add("quit"); });
        // The keychain answers from a thread of its own.
        ASSERT_TRUE(backend->keychain().finish(std::chrono::seconds(60)));
        (void)mainThread.runAll();
    }
    // A stroke without its pauses, which are the typist's own affair.
    static Calls done() {
        Calls calls = serviceCalls().take();
        std::erase(calls, "sleep 8000");
        return calls;
    }
    static Calls after(Calls first, const Calls& then) {
        first.insert(first.end(), then.begin(), then.end());
        return first;
    }
    static void release(KeyCode keyCode, ModifierFlags flags) {
        macdouble::pressElsewhere(kCGEventKeyUp, keyCode, flags);
    }
    static NSMenu* menu() { return [[macdouble::statusItems() lastObject] menu]; }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeScheduler scheduler;
    FakeClock clock{0, 0};
    RecordedPause pause;
    std::unique_ptr<backend::Backend> backend;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(StartUpTest, AsksTheSystemInItsOrder) {
    launch();
    EXPECT_THAT(done(), ElementsAreArray(Calls{
                            "activation policy 1",
                            "setValue:0 forKey:drawsBackground",
                            "observe title options 8",
                            "observe URL options 8",
                            "observe loading options 8",
                            "observe estimatedProgress options 8",
                            "observe hasOnlySecureContent options 8",
                            "observe serverTrust options 8",
                            "observe canGoBack options 8",
                            "observe canGoForward options 8",
                            "local monitor 4096",
                            // Small windows come with their making; the list is not made yet at the first notice.
                            "front icon",
                            "front emoji",
                            "observe frontmostApplication 5",
                            "front icon",
                            "front emoji",
                            "out main",
                            "hide",
                            "unhide without activation",
                            "front watched",
                            "global monitor 2048",
                            "global monitor 1024",
                            "local monitor 2048",
                            // Once more, now that all of them are there.
                            "front icon",
                            "front emoji",
                            "out main",
                            "front watched",
                            "hide",
                            "unhide without activation",
                            "status item of length -2",
                            "image scaling 0",
                            "image vantor",
                            "menu Vantor",
                        }));
    EXPECT_STREQ([[[menu() itemAtIndex:0] title] UTF8String], "Disable on Guild Wars 2");

    // A page hears of these keys from a menu only; without a target they go to whoever has the keyboard.
    NSMenu* const bar = [[NSApplication sharedApplication] mainMenu];
    NSMenu* const edit = [[bar itemAtIndex:[bar numberOfItems] - 1] submenu];
    Calls keys;
    for (NSInteger at = 0; at < [edit numberOfItems]; ++at) {
        NSMenuItem* const item = [edit itemAtIndex:at];
        EXPECT_FALSE([item target]);
        keys.push_back(std::string([[item keyEquivalent] UTF8String]) + " " +
                       [NSStringFromSelector([item action]) UTF8String]);
    }
    EXPECT_THAT(keys, ElementsAre("x cut:", "c copy:", "v paste:", "a selectAll:"));
}

TEST_F(StartUpTest, AHotkeyHeardInTheGameOpensTheOverlayAndPressesTheCamerasKey) {
    (void)defaults.setValue("general.windowToggleEvent", std::string("⌘ + ⇧ + A"));
    (void)defaults.setValue("general.actionCamToggleEvent", std::string(" ⌃ + V "));
    launch();
    (void)serviceCalls().take();
    const Calls camera{"hide",
                       "unhide without activation",
                       "post to tap 0: down 9 flags 256",
                       "post to tap 0: down 59",
                       "post to tap 0: up 59",
                       "post to tap 0: up 9 flags 256"};
    release(keyA, modifier::command);
    EXPECT_THAT(done(), IsEmpty());
    release(keyA, modifier::command | modifier::shift);
    EXPECT_THAT(done(), ElementsAreArray(after({"front icon", "front emoji", "front main", "out watched"}, camera)));
    release(escape, modifier::option);
    EXPECT_THAT(done(), ElementsAreArray(after(shownAroundTheGame, camera)));
    EXPECT_TRUE(macdouble::pressHere(kCGEventKeyUp, keyA, modifier::command | modifier::shift));
    EXPECT_EQ(done().front(), "front icon") << "in a window of ours too, and once";
    macdouble::setFrontmost("org.example.Editor");
    EXPECT_THAT(done(), ElementsAre("out icon", "out main", "out emoji", "out watched"));
}

TEST_F(StartUpTest, ThePasteboardAndALoginAreTypedIntoTheGame) {
    [keychainDouble().items addObject:@{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"orvendel.Vantor.accounts",
        (id)kSecValueData : [@"{\"a\":\"V\"}" dataUsingEncoding:NSUTF8StringEncoding],
    }];
    (void)defaults.setValue("general.pasteClipoard", true);
    launch();
    backend->pasteboard().setText("a");
    (void)serviceCalls().take();
    release(keyV, modifier::command);
    EXPECT_THAT(done(), ElementsAre("sleep 600000", "hide", "unhide without activation",
                                    "post to tap 0: down 0 flags 256", "post to tap 0: up 0 flags 256"));

    NSMenuItem* const account = [[[menu() itemAtIndex:1] submenu] itemAtIndex:0];
    EXPECT_STREQ([[account title] UTF8String], "a");
    EXPECT_TRUE(macdouble::choose(account));
    EXPECT_THAT(done(), ElementsAre("hide", "unhide without activation", "post to tap 0: down 0 flags 256",
                                    "post to tap 0: up 0 flags 256", "post to tap 0: down 48", "post to tap 0: up 48",
                                    "post to tap 0: down 56", "post to tap 0: down 9 flags 131328",
                                    "post to tap 0: up 9 flags 131328", "post to tap 0: up 56"));
    EXPECT_TRUE(macdouble::choose([menu() itemAtIndex:3]));
    EXPECT_THAT(done(), ElementsAre("quit"));
}

TEST_F(StartUpTest, HotkeysWorkFromTheMomentThePlayerAllowsTheLast) {
    macdouble::privacyDouble() = {false, kIOHIDAccessTypeGranted};
    launch();
    EXPECT_EQ(scheduler.waiting(), 1U) << "one is missing";
    delegate.reset();
    macdouble::privacyDouble() = {};
    launch();
    const auto missing = [this] {
        std::vector<CapabilityKind> names;
        for (const Capability& each : backend->capabilities())
            if (!each.present) names.push_back(each.kind);
        return names;
    };
    EXPECT_THAT(missing(), ElementsAre(CapabilityKind::rawKeys, CapabilityKind::posting));
    (void)serviceCalls().take();
    backend->ask(CapabilityKind::rawKeys)();
    backend->ask(CapabilityKind::posting)();
    EXPECT_FALSE(backend->ask(CapabilityKind::keyring));
    EXPECT_THAT(done(), ElementsAre("ask for listening", "ask for accessibility"));

    macdouble::privacyDouble() = {true, kIOHIDAccessTypeGranted};
    scheduler.advance(PrivacyPermissions::between);
    EXPECT_THAT(done(), ElementsAre("remove monitor 2048", "global monitor 2048", "remove monitor 1024",
                                    "global monitor 1024"));
    EXPECT_THAT(missing(), IsEmpty());
    (void)mainThread.runAll();
    scheduler.advance(PrivacyPermissions::between);
    EXPECT_EQ(scheduler.waiting(), 0U) << "nothing is looked at any more";
}

TEST_F(StartUpTest, TheWishForLessMotionIsFollowed) {
    launch();
    std::vector<bool> told;
    backend->followReducedMotion([&](bool reduced) { told.push_back(reduced); });
    macdouble::setReducesMotion(true);
    EXPECT_THAT(told, ElementsAre(false, true));
    macdouble::setReducesMotion(false);
}

}  // namespace
}  // namespace vantor
