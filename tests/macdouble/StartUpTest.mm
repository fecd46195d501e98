// The whole start on this backend, and what a player does then: the program's own parts as they are, doubles for the
// system alone.

#include <gmock/gmock.h>

#include <QtWidgets/QWidget>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>

#include "Backend.h"
#include "Mac.h"
#include "app/AppDelegate.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "platform/macos/PrivacyPermissions.h"
#include "platform/macos/WebKitPage.h"

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

struct NoPause final : Pause {
    void wait(std::chrono::microseconds) override {}
};

class StartUpTest : public testing::Test {
protected:
    StartUpTest() {
        mac().setFrontmost("net.arena.Guild-Wars-2");
        mac().bundle = "net.arena.Guild-Wars-2";
        mac().bundleName = @"Guild Wars 2";
    }

    void launch() {
        backend = backend::makeBackend(mainThread, scheduler);
        const TypingServices keys = backend->typing();
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{
                {defaults,
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
                scheduler,
                backend->keychain(),
                [this] { return backend->makeWebPage(); },
                [] { return std::string("body {}"); },
                [this](AppWindowName name, AppObserver&) { return std::make_unique<WindowDouble>(name, shown); }},
            [] { macdouble::note("quit"); });
        // The keychain answers from a thread of its own.
        ASSERT_TRUE(backend->keychain().finish(std::chrono::minutes(1)));
        (void)mainThread.runAll();
    }
    static void release(KeyCode keyCode, ModifierFlags flags) { mac().press(kCGEventKeyUp, keyCode, flags, false); }
    static NSMenu* menu() { return [[mac().statusItems lastObject] menu]; }
    std::vector<CapabilityKind> missing() {
        std::vector<CapabilityKind> names;
        for (const Capability& each : backend->capabilities())
            if (!each.present) names.push_back(each.kind);
        return names;
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeScheduler scheduler;
    FakeClock clock{0, 0};
    NoPause pause;
    Windows shown;
    std::unique_ptr<backend::Backend> backend;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(StartUpTest, ShowsItselfBesideTheGameAndLeavesItTheFocus) {
    NSMenu* const ofToolkit = [[[NSMenu alloc] initWithTitle:@"the toolkit's"] autorelease];
    [[NSApplication sharedApplication] setMainMenu:ofToolkit];
    launch();
    EXPECT_EQ(mac().activationPolicy, NSApplicationActivationPolicyAccessory);
    EXPECT_EQ(shown, (Windows{icon, emoji, watchedEvents}));
    const auto calls = done();
    EXPECT_EQ(calls.back(), "unhide without activation");
    EXPECT_EQ(calls[calls.size() - 2], "hide");
    EXPECT_EQ([mac().statusItems count], 1U);
    EXPECT_STREQ([[[menu() itemAtIndex:0] title] UTF8String], "Disable on Guild Wars 2");
    EXPECT_EQ(scheduler.waiting(), 0U) << "nothing is missing, nothing is looked at";

    // A page hears of these keys from a menu only; without a target they go to whoever has the keyboard.
    EXPECT_EQ([[NSApplication sharedApplication] mainMenu], ofToolkit);
    NSMenu* const edit = [[ofToolkit itemAtIndex:0] submenu];
    std::vector<std::string> keys;
    for (NSInteger at = 0; at < [edit numberOfItems]; ++at) {
        NSMenuItem* const item = [edit itemAtIndex:at];
        EXPECT_FALSE([item target]);
        keys.push_back(std::string([[item keyEquivalent] UTF8String]) + " " + sel_getName([item action]));
    }
    EXPECT_THAT(keys, ElementsAre("x cut:", "c copy:", "v paste:", "a selectAll:"));
}

TEST_F(StartUpTest, AHotkeyHeardInTheGameOpensTheOverlayAndPressesTheCamerasKey) {
    (void)defaults.setValue("general.windowToggleEvent", std::string("⌘ + ⇧ + A"));
    (void)defaults.setValue("general.actionCamToggleEvent", std::string(" ⌃ + V "));
    launch();
    (void)done();
    const auto camera =
        ElementsAre("hide", "unhide without activation", "down 9 flags 256", "down 59", "up 59", "up 9 flags 256");
    release(keyA, modifier::command);
    EXPECT_THAT(done(), IsEmpty());
    release(keyA, modifier::command | modifier::shift);
    EXPECT_EQ(shown, (Windows{icon, emoji, main}));
    EXPECT_THAT(done(), camera);
    release(escape, modifier::option);
    EXPECT_EQ(shown, (Windows{icon, emoji, watchedEvents}));
    (void)done();
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
    (void)defaults.setValue("general.pasteClipoard", true);
    launch();
    backend->pasteboard().setText("a");
    (void)done();
    release(keyV, modifier::command);
    EXPECT_THAT(done(), ElementsAre("hide", "unhide without activation", "down 0 flags 256", "up 0 flags 256"));
    EXPECT_TRUE(mac().choose([[[menu() itemAtIndex:1] submenu] itemAtIndex:0]));
    EXPECT_THAT(done(),
                ElementsAre("hide", "unhide without activation", "down 0 flags 256", "up 0 flags 256", "down 48",
                            "up 48", "down 56", "down 9 flags 131328", "up 9 flags 131328", "up 56"));
    EXPECT_TRUE(mac().choose([menu() itemAtIndex:3]));
    EXPECT_THAT(done(), ElementsAre("quit"));
}

TEST_F(StartUpTest, HotkeysWorkFromTheMomentThePlayerAllowsTheLast) {
    mac().trusted = false;
    mac().listening = kIOHIDAccessTypeUnknown;
    (void)defaults.setValue("general.windowToggleEvent", std::string("A"));
    launch();
    EXPECT_THAT(missing(), ElementsAre(CapabilityKind::rawKeys, CapabilityKind::posting));
    (void)done();
    backend->ask(CapabilityKind::rawKeys)();
    backend->ask(CapabilityKind::posting)();
    EXPECT_FALSE(backend->ask(CapabilityKind::keyring));
    const auto allow = [&] {
        scheduler.advance(PrivacyPermissions::between);
        (void)mainThread.runAll();
        release(keyA, 0);
    };
    mac().listening = kIOHIDAccessTypeGranted;
    allow();
    EXPECT_FALSE(shown.contains(main));
    backend->ask(CapabilityKind::rawKeys)();
    EXPECT_THAT(done(), ElementsAre("ask for listening", "ask for accessibility", "ask for accessibility"));
    mac().trusted = true;
    allow();
    EXPECT_TRUE(shown.contains(main));
    EXPECT_THAT(missing(), IsEmpty());
    scheduler.advance(PrivacyPermissions::between);
    EXPECT_EQ(scheduler.waiting(), 0U) << "nothing is looked at any more";
}

TEST_F(StartUpTest, ReducedMotionIsFollowed) {
    launch();
    std::vector<bool> told;
    backend->followReducedMotion([&](bool reduced) { told.push_back(reduced); });
    mac().setReducesMotion(true);
    EXPECT_THAT(told, ElementsAre(false, true));
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

    // The player's own fonts are made known, so that they count as known.
    std::filesystem::create_directories(folder / "vantor/fonts");
    std::ofstream(folder / "vantor/fonts/own.ttf", std::ios::binary) << std::string_view("\0\1\0\0rest", 8);
    backend::registerScriptFonts();
    EXPECT_EQ(mac().fonts.size(), 1U);
}

}  // namespace
}  // namespace vantor
