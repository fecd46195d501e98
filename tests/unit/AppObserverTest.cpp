#include "app/AppObserver.h"

#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeKeychain.h"
#include "fake/FakeMainThread.h"
#include "fake/FakePasteboard.h"
#include "fake/FakePause.h"
#include "fake/FakeStatusItem.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "fake/FakeWebPage.h"
#include "fake/FakeWindows.h"
#include "fake/FakeWorkspace.h"

namespace vantor {
namespace {

using Log = std::vector<std::string>;

const std::string game = "net.arena.Guild-Wars-2";
const std::string catalogue =
    R"([{"id":3,"category":"Core Tyria","name":"World bosses","active":true,"link":"x",
        "segments":[{"id":7,"name":"Fire Elemental","chatlink":"[&BEcAAAA=]"}],
        "sequences":{"partial":[],"pattern":[{"r":7,"d":120}]}}])";

constexpr KeyCode escape = 53;
constexpr KeyCode keyV = 9;
constexpr KeyCode keyT = 17;

// Also writes the focus into the shared log, so that its place among the windows is seen.
class LoggedWorkspace final : public Workspace {
public:
    explicit LoggedWorkspace(Log& log) : log_(log) { inner.names[game] = "Guild Wars 2"; }
    Subscription observeFrontmostApplication(FrontmostHandler handler) override {
        log_.emplace_back("observe frontmost");
        return inner.observeFrontmostApplication(std::move(handler));
    }
    [[nodiscard]] std::optional<std::string> displayName(const std::string& identifier) const override {
        return inner.displayName(identifier);
    }
    void hideAndUnhideWithoutActivation() override { log_.emplace_back("hand focus back"); }
    bool awaitFocusReturned(std::chrono::milliseconds) override { return true; }

    FakeWorkspace inner;

private:
    Log& log_;
};

class AppObserverTest : public testing::Test {
protected:
    AppObserverTest() {
        layout.keys[{keyT, 0}] = "t";
        layout.keys[{keyV, 0}] = "v";
        workspace.inner.bringToFront(game);
    }

    AppDelegate& launch() {
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{{defaults,
                                session,
                                queue,
                                mainThread,
                                clock,
                                {"https://api", "qrc:/catalogue"},
                                [this](const std::string& line) { printed.push_back(line); },
                                [this](const std::string& line) { stopped.push_back(line); }},
                               monitors,
                               poster,
                               layout,
                               workspace,
                               statusItem,
                               pasteboard,
                               pause,
                               keychain,
                               [] { return std::make_unique<FakeWebPage>(); },
                               [] { return std::nullopt; },
                               [this](AppWindowName name, AppObserver&) { return windows.make(name); }},
            [this] { quits++; });
        return *delegate;
    }
    AppObserver& observer() { return delegate->appObserver(); }

    Log since() { return std::exchange(log, {}); }
    void release(KeyCode code, ModifierFlags flags, const std::string& characters) {
        monitors.pressInGame({KeyEventType::keyUp, code, flags, characters});
    }
    void answer(std::optional<std::string> body) {
        queue.runAll();
        ASSERT_TRUE(session.answer(std::move(body)));
        queue.runAll();
    }

    Log log;
    Log printed;
    Log stopped;
    int quits = 0;
    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeClock clock{0, 0};
    FakeKeyMonitors monitors;
    FakeKeyPoster poster;
    FakeKeyboardLayout layout;
    LoggedWorkspace workspace{log};
    FakeStatusItem statusItem;
    FakeKeychain keychain;
    FakePasteboard pasteboard;
    FakePause pause;
    FakeWindows windows{log};
    std::unique_ptr<AppDelegate> delegate;
};

const Log closedPlan{"front icon", "front emoji", "out main", "front watched", "hand focus back"};
const Log openPlan{"front icon", "front emoji", "front main", "out watched"};
const Log hiddenPlan{"out icon", "out main", "out emoji", "out watched"};

TEST_F(AppObserverTest, MakesWindowsInOrderAndUpdatesOnceMoreAfterTheLast) {
    launch();
    // The first update knows no watched window yet; the main window never comes up by itself.
    EXPECT_EQ(since(), (Log{"make main", "make icon", "front icon", "make emoji", "front emoji", "observe frontmost",
                            "front icon", "front emoji", "out main", "hand focus back", "make watched", "front watched",
                            "front icon", "front emoji", "out main", "front watched", "hand focus back"}));
    ASSERT_EQ(monitors.monitors.size(), 4U);  // the first is the typing's own
    const auto kind = [&](std::size_t index) {
        return std::pair(monitors.monitors[index]->global, monitors.monitors[index]->mask);
    };
    EXPECT_EQ(kind(1), std::pair(true, KeyEventMask{2048}));
    EXPECT_EQ(kind(2), std::pair(true, KeyEventMask{1024}));
    EXPECT_EQ(kind(3), std::pair(false, KeyEventMask{2048}));
}

TEST_F(AppObserverTest, FollowsTheFrontmostApplication) {
    launch();
    EXPECT_EQ(statusItem.titles(), (Log{"Disable on Guild Wars 2", "Fill credentials", "-", "Quit"}));
    since();
    workspace.inner.bringToFront("org.other");
    EXPECT_EQ(since(), hiddenPlan);
    EXPECT_EQ(statusItem.titles()[0], "Enable on org.other");
    workspace.inner.bringToFront("");
    EXPECT_EQ(since(), hiddenPlan);
    workspace.inner.bringToFront(game);
    EXPECT_EQ(since(), closedPlan);

    observer().iconPressed();
    EXPECT_EQ(since(), openPlan);
    workspace.inner.bringToFront("orvendel.Vantor");
    EXPECT_EQ(since(), openPlan);
    workspace.inner.bringToFront("org.other");
    EXPECT_EQ(since(), hiddenPlan);
    workspace.inner.bringToFront(game);
    EXPECT_EQ(since(), openPlan);
}

TEST_F(AppObserverTest, TheMenuEnablesAndDisablesTheCurrentApplication) {
    launch();
    workspace.inner.bringToFront("org.other");
    since();
    statusItem.press(0);
    EXPECT_EQ(since(), closedPlan);
    EXPECT_EQ(statusItem.titles()[0], "Disable on org.other");
    statusItem.press(0);
    EXPECT_EQ(since(), hiddenPlan);
    EXPECT_EQ(statusItem.titles()[0], "Enable on org.other");
    statusItem.press(3);
    EXPECT_EQ(quits, 1);
}

TEST_F(AppObserverTest, OnlyHotkeysReplayTheCameraKey) {
    defaults.put(settings::windowToggleEvent, std::string("⌘ + T"));
    defaults.put(settings::actionCamToggleEvent, std::string(" v\n"));
    launch();
    since();

    release(escape, 0, "");
    EXPECT_EQ(since(), closedPlan);
    EXPECT_TRUE(poster.posted.empty());

    release(keyT, modifier::command, "t");
    Log expected = openPlan;
    expected.emplace_back("hand focus back");  // typing's own
    EXPECT_EQ(since(), expected);
    EXPECT_TRUE(observer().visible());
    EXPECT_EQ(poster.posted.size(), 2U);

    release(escape, modifier::shift, "");
    EXPECT_FALSE(observer().visible());
    EXPECT_EQ(poster.posted.size(), 4U);

    // In Vantor's own window the key toggles once and goes on to the view.
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyUp, keyT, modifier::command, "t"}),
              KeyMonitors::Passing::passOn);
    EXPECT_TRUE(observer().visible());
    EXPECT_EQ(poster.posted.size(), 6U);

    observer().closePressed();
    observer().iconPressed();
    observer().closePressed();
    EXPECT_FALSE(observer().visible());
    EXPECT_EQ(poster.posted.size(), 6U);

    // Over another application the wish is flipped all the same.
    workspace.inner.bringToFront("org.other");
    since();
    release(keyT, modifier::command, "t");
    EXPECT_TRUE(observer().visible());
    EXPECT_EQ(Log(log.begin(), log.begin() + 4), hiddenPlan);
}

TEST_F(AppObserverTest, PastesOnlyIntoTheGameWhileClosed) {
    defaults.put(settings::pasteClipboard, true);
    pasteboard.held = "tv";
    launch();
    observer().openOverlay();
    release(keyV, modifier::command, "v");
    workspace.inner.bringToFront("org.other");
    observer().closePressed();
    release(keyV, modifier::command, "v");
    EXPECT_TRUE(pause.waits.empty());
    EXPECT_EQ(pasteboard.reads, 0);
    EXPECT_EQ(*monitors.withheld, 0);

    workspace.inner.bringToFront(game);
    release(keyV, modifier::command, "v");
    ASSERT_FALSE(pause.waits.empty());
    EXPECT_EQ(pause.waits[0], std::chrono::milliseconds(600));
    EXPECT_EQ(pasteboard.reads, 1);
    EXPECT_EQ(poster.posted.size(), 4U);
    EXPECT_FALSE(observer().visible());

    // What pastes is kept from the game, and nothing else.
    EXPECT_EQ(*monitors.withheld, 1);
    observer().openOverlay();
    EXPECT_EQ(*monitors.withheld, 0);
    observer().closePressed();
    EXPECT_EQ(*monitors.withheld, 1);
    ASSERT_EQ(defaults.setValue(settings::pasteClipboard, false), Defaults::Verdict::stored);
    EXPECT_EQ(*monitors.withheld, 0);
    ASSERT_EQ(defaults.setValue(settings::pasteClipboard, true), Defaults::Verdict::stored);
    EXPECT_EQ(*monitors.withheld, 1);
    observer().toggleApp();
    EXPECT_EQ(*monitors.withheld, 0);
}

TEST_F(AppObserverTest, PublishesTheTimelineAndFollowsTheZone) {
    defaults.put(settings::apiKey, std::string("key"));
    launch();
    queue.runAll();
    EXPECT_EQ(observer().data().state(), GameData::State::loading);
    ASSERT_EQ(session.requests().size(), 1U);
    EXPECT_EQ(session.requests()[0].url, "https://api/v2/account/achievements");
    answer("[]");
    EXPECT_EQ(session.requests()[1].url, "qrc:/catalogue/events.json");
    EXPECT_EQ(session.requests()[2].url, "qrc:/catalogue/categories/beasts.json");
    EXPECT_EQ(observer().data().state(), GameData::State::loading);

    int notices = 0;
    mainThread.runAll();
    const auto subscription = observer().data().observe([&] { ++notices; });
    answer(catalogue);
    EXPECT_EQ(notices, 0) << "views hear of it on the main thread only";
    mainThread.runAll();
    EXPECT_GT(notices, 0);
    EXPECT_EQ(printed, Log{});
    const auto first = observer().data().timeline();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->events.size(), 13U);
    EXPECT_EQ(first->events[0].startMinute, 0);

    observer().data().followZone();
    queue.runAll();
    EXPECT_EQ(observer().data().timeline(), first);

    clock.setOffset(7200);
    observer().updateWindows();
    observer().data().followZone();
    queue.runAll();
    const auto second = observer().data().timeline();
    ASSERT_NE(second, first);
    EXPECT_EQ(second->events[0].startMinute, 120);
    EXPECT_EQ(first->events[0].startMinute, 0) << "a snapshot never changes";

    defaults.put(settings::timerIsEvent, false);
    observer().data().reloadEvents();
    queue.runAll();
    EXPECT_TRUE(observer().data().timeline()->events.empty());
    EXPECT_EQ(session.requests().size(), 3U) << "nothing is fetched anew";
}

TEST_F(AppObserverTest, TellsWhyThereIsNoTimeline) {
    launch();
    queue.runAll();
    EXPECT_TRUE(session.requests().empty());
    EXPECT_EQ(observer().data().state(), GameData::State::noKey);
    defaults.put(settings::apiKey, std::string("key"));
    EXPECT_EQ(observer().data().state(), GameData::State::keyIsNew);

    launch();
    answer(R"({"text":"Invalid access token"})");
    EXPECT_EQ(observer().data().state(), GameData::State::failed);
    EXPECT_EQ(printed.size(), 1U);
    EXPECT_TRUE(stopped.empty());
}

TEST_F(AppObserverTest, AnInconsistentScheduleStopsTheProgram) {
    defaults.put(settings::apiKey, std::string("key"));
    launch();
    answer("[]");
    std::string broken = catalogue;
    broken.replace(broken.find("\"r\":7"), 5, "\"r\":8");
    answer(broken);
    ASSERT_EQ(stopped.size(), 1U);
    EXPECT_NE(stopped[0].find("World bosses"), std::string::npos);
    EXPECT_EQ(stopped[0].find('\n'), std::string::npos);
    EXPECT_FALSE(observer().data().timeline());
}

}  // namespace
}  // namespace vantor
