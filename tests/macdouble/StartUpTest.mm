// The whole start on this backend, and what a player does then: the program's own parts as they are, doubles for the
// system alone.

#include <gmock/gmock.h>

#include <QtWidgets/QWidget>

#include <filesystem>
#include <memory>
#include <set>

#include "Backend.h"
#include "Mac.h"
#include "app/AppDelegate.h"
#include "app/SystemCapability.h"
#include "base/AtOnce.h"
#include "fake/FakeClock.h"
#include "fake/FakePause.h"
#include "fake/FakeScheduler.h"
#include "platform/macos/WebKitPage.h"
#include "unit/Services.h"

namespace vantor {
namespace {

using macdouble::done;
using macdouble::mac;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr KeyCode keyA = 0;
constexpr KeyCode keyV = 9;
constexpr KeyCode escape = 53;

using Windows = std::set<AppWindowName>;
using enum AppWindowName;

struct WindowDouble final : AppWindow {
    WindowDouble(AppWindowName which, Windows& all) : name(which), shown(all) {}
    void orderFront() override { shown.insert(name); }
    void orderOut() override { shown.erase(name); }
    void takeFocus() override {}

    AppWindowName name;
    Windows& shown;
};

class StartUpTest : public testing::Test, protected Services {
protected:
    StartUpTest() {
        mac().loopTurns = false;
        mac().setFrontmost("net.arena.Guild-Wars-2");
        mac().bundle = "net.arena.Guild-Wars-2";
        mac().bundleName = @"Guild Wars 2";
    }

    void launch() {
        backend = backend::makeBackend(mainThread, scheduler);
        const TypingServices keys = backend->typing();
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{
                {defaults, session, queue, mainThread, clock, {"https://api", "qrc:/catalogue"}, print, print},
                keys.monitors,
                keys.poster,
                keys.layout,
                keys.workspace,
                backend->statusItem(),
                backend->pasteboard(),
                pause,
                scheduler,
                backend->keychain(),
                keys.focus,
                typingThread,
                [this] { return backend->makeWebPage(); },
                [] { return std::string("body {}"); },
                [this](AppWindowName name, AppObserver&) { return std::make_unique<WindowDouble>(name, shown); }},
            [] { macdouble::note("quit"); });
        // The keychain answers from a thread of its own.
        ASSERT_TRUE(backend->keychain().finish(std::chrono::minutes(1)));
        mac().loopTurns = true;
        (void)mainThread.runAll();
    }
    void release(KeyCode keyCode, ModifierFlags flags) {
        mac().press(kCGEventKeyUp, keyCode, flags, false);
        (void)mainThread.runAll();
    }
    void pressAfterTheNextLook() {
        scheduler.advance(std::chrono::seconds(1));
        (void)mainThread.runAll();
        release(keyA, 0);
    }
    static NSMenu* menu() { return [[mac().statusItems lastObject] menu]; }
    // Each with what the player is to allow.
    std::string missing() {
        std::string names;
        for (const Capability& each : backend->capabilities())
            if (!each.present)
                names += capabilityName(each.kind) + ": " + each.advice.substr(each.advice.rfind(", ") + 2) + "; ";
        return names;
    }

    TaskQueueAtOnce typingThread;
    FakeScheduler scheduler;
    FakeClock clock{0, 0};
    FakePause pause;
    Windows shown;
    std::unique_ptr<backend::Backend> backend;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(StartUpTest, ShowsItselfBesideTheGameAndLeavesItTheFocus) {
    mac().active = true;
    launch();
    EXPECT_EQ(mac().activationPolicy, NSApplicationActivationPolicyAccessory);
    EXPECT_EQ(shown, (Windows{icon, emoji, watchedEvents}));
    EXPECT_FALSE(mac().active || mac().hidden);
    EXPECT_EQ([mac().statusItems count], 1U);
    EXPECT_STREQ([[[menu() itemAtIndex:0] title] UTF8String], "Disable on Guild Wars 2");
    mac().bundleName = nil;
    mac().setFrontmost("org.example.Editor");
    mac().setFrontmost("net.arena.Guild-Wars-2");
    EXPECT_STREQ([[[menu() itemAtIndex:0] title] UTF8String], "Disable on net.arena.Guild-Wars-2");
    EXPECT_EQ(scheduler.waiting(), 0U) << "nothing is missing, nothing is looked at";
    std::vector<bool> told;
    backend->followReducedMotion([&](bool reduced) { told.push_back(reduced); });
    mac().setReducesMotion(true);
    EXPECT_THAT(told, ElementsAre(false, true));
}

TEST_F(StartUpTest, AHotkeyHeardInTheGameOpensTheOverlayAndPressesTheCamerasKey) {
    defaults.put("general.windowToggleEvent", std::string("⌘ + ⇧ + A"));
    defaults.put("general.actionCamToggleEvent", std::string(" ⌃ + V "));
    launch();
    release(keyA, modifier::command);
    EXPECT_THAT(done(), IsEmpty());
    release(keyA, modifier::command | modifier::shift);
    EXPECT_EQ(shown, (Windows{icon, emoji, main}));
    EXPECT_THAT(done(), ElementsAre("down 9 flags 256", "down 59", "up 59", "up 9 flags 256"));
    release(escape, modifier::option);
    EXPECT_EQ(shown, (Windows{icon, emoji, watchedEvents}));
    EXPECT_TRUE(mac().press(kCGEventKeyUp, keyA, modifier::command | modifier::shift, true))
        << "in a window of ours too";
    EXPECT_EQ(shown, (Windows{icon, emoji, main}));
    mac().setFrontmost("org.example.Editor");
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(StartUpTest, ThePasteboardAndALoginAreTypedIntoTheGame) {
    [mac().keychainItems addObject:@{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"orvendel.Vantor.accounts",
        (id)kSecValueData : [@"{\"a\":\"V\"}" dataUsingEncoding:NSUTF8StringEncoding],
    }];
    defaults.put("general.pasteClipoard", true);
    launch();
    backend->pasteboard().setText("a");
    release(keyV, modifier::command);
    EXPECT_THAT(done(), ElementsAre("down 0 flags 256", "up 0 flags 256"));
    EXPECT_TRUE(mac().choose([[[menu() itemAtIndex:1] submenu] itemAtIndex:0]));
    EXPECT_THAT(done(), ElementsAre("down 0 flags 256", "up 0 flags 256", "down 48", "up 48", "down 56",
                                    "down 9 flags 131328", "up 9 flags 131328", "up 56"));
    EXPECT_TRUE(mac().choose([menu() itemAtIndex:3]));
    EXPECT_THAT(done(), ElementsAre("quit"));
}

TEST_F(StartUpTest, HotkeysWorkFromTheMomentThePlayerAllowsTheLast) {
    mac().trusted = false;
    mac().listening = kIOHIDAccessTypeUnknown;
    defaults.put("general.windowToggleEvent", std::string("A"));
    launch();
    EXPECT_EQ(missing(), "raw keys: Accessibility; posting: Accessibility; ");
    backend->ask(CapabilityKind::rawKeys)();
    backend->ask(CapabilityKind::posting)();
    EXPECT_FALSE(backend->ask(CapabilityKind::keyring));
    mac().trusted = true;
    pressAfterTheNextLook();
    EXPECT_FALSE(shown.contains(main)) << "on a Mac that wants both";
    EXPECT_EQ(missing(), "raw keys: Input Monitoring; ");
    backend->ask(CapabilityKind::rawKeys)();
    EXPECT_THAT(done(), ElementsAre("ask for accessibility", "ask for accessibility", "ask for listening"));
    mac().listening = kIOHIDAccessTypeGranted;
    pressAfterTheNextLook();
    EXPECT_TRUE(shown.contains(main));
    EXPECT_EQ(missing(), "");
    scheduler.advance(std::chrono::minutes(1));
    EXPECT_EQ(scheduler.waiting(), 0U) << "nothing is looked at any more";
}

TEST_F(StartUpTest, AHotkeyThatIsHeardIsAsGoodAsThePermission) {
    mac().trusted = false;
    mac().listening = kIOHIDAccessTypeDenied;
    mac().hearsWhereTrusted = true;
    launch();
    mac().trusted = true;
    for (int look = 0; look < 2; ++look) pressAfterTheNextLook();
    EXPECT_EQ(missing(), "");
    EXPECT_EQ(scheduler.waiting(), 0U);
}

TEST_F(StartUpTest, ThePageHasOnePlaceWhichSaysWhenItHasStopped) {
    launch();
    const PageSource source = backend->pageSource();
    const std::unique_ptr<QWidget> place(source.engineWidget());
    EXPECT_EQ(source.engineWidget(), place.get());
    EXPECT_EQ(source.page.engine(), WebPage::Engine::running);
    WKWebView* const view = static_cast<WKWebView*>(static_cast<WebKitPage&>(source.page).nativeView());
    [[view navigationDelegate] webViewWebContentProcessDidTerminate:view];
    EXPECT_EQ(source.page.engine(), WebPage::Engine::gone);
}

TEST(BackendTest, PreparesTheProcess) {
    EXPECT_TRUE(backend::prepareToStart());
    EXPECT_EQ(qgetenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM"), "1");
    EXPECT_EQ(qgetenv("QT_MAC_SET_RAISE_PROCESS"), "0");

    // A settings file that was named is the one that is written.
    const std::filesystem::path folder = getenv("VANTOR_DEFAULTS_OF_TESTS");
    const auto file = folder / "settings.json";
    EXPECT_EQ(backend::makeDefaults(file.string(), nullptr)->setValue("test.file", true), Defaults::Verdict::stored);
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(backend::makeDefaults(std::nullopt, nullptr)->value("test.file"), std::nullopt);
}

}  // namespace
}  // namespace vantor
