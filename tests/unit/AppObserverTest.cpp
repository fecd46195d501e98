#include "app/AppObserver.h"

#include "app/AppDelegate.h"
#include "browser/LazyWebPage.h"
#include "fake/FakeClock.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeKeychain.h"
#include "fake/FakePasteboard.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeStatusItem.h"
#include "unit/Services.h"
#include "unit/Typing.h"

namespace vantor {
namespace {

using Log = std::vector<std::string>;
using std::chrono::milliseconds;

const std::string game = "net.arena.Guild-Wars-2";
const std::string catalogue =
    R"([{"id":3,"category":"Core Tyria","name":"World bosses","active":true,"link":"x",
        "segments":[{"id":7,"name":"Fire Elemental","chatlink":"[&BEcAAAA=]"}],
        "sequences":{"partial":[],"pattern":[{"r":7,"d":120}]}}])";

constexpr KeyCode escape = 53;
constexpr KeyCode keyV = 9;
constexpr KeyCode keyT = 17;

struct LoggedWindow final : AppWindow {
    LoggedWindow(AppWindowName window, Log& shared)
        : name(std::array{"main", "icon", "emoji", "watched"}.at(static_cast<std::size_t>(window))), log(shared) {}
    void orderFront() override { log.push_back("front " + name); }
    void orderOut() override { log.push_back("out " + name); }
    void takeFocus() override { log.push_back("focus " + name); }
    std::string name;
    Log& log;
};

class AppObserverTest : public testing::Test, protected Services, protected Typing<FakeKeyboardLayout> {
protected:
    AppObserverTest() {
        layout.keys = {{{keyT, 0}, "t"}, {{keyV, 0}, "v"}};
        workspace.names[game] = "Guild Wars 2";
        workspace.bringToFront(game);
        defaults.put(settings::windowToggleEvent, std::string("⌘ + T"));
        defaults.put(settings::actionCamToggleEvent, std::string(" v\n"));
    }

    AppObserver& launch() {
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{{defaults,
                                session,
                                queue,
                                mainThread,
                                clock,
                                {"https://api", "qrc:/catalogue"},
                                print,
                                [this](const std::string& line) { stopped.push_back(line); }},
                               monitors,
                               poster,
                               layout,
                               workspace,
                               statusItem,
                               pasteboard,
                               pause,
                               scheduler,
                               keychain,
                               [] { return std::make_unique<LazyWebPage>([] { return nullptr; }); },
                               [] { return std::nullopt; },
                               [this](AppWindowName name, AppObserver&) {
                                   return std::make_unique<LoggedWindow>(name, workspace.calls);
                               }},
            [this] { quits++; });
        since();
        return delegate->appObserver();
    }
    // What the windows and the desktop were told since the last look.
    Log since() { return std::exchange(workspace.calls, {}); }
    void release(KeyCode code, ModifierFlags flags) {
        monitors.pressInGame({KeyEventType::keyUp, code, flags, code == keyT ? "t" : code == keyV ? "v" : ""});
    }

    Log stopped;
    int quits = 0;
    FakeClock clock{0, 0};
    FakeStatusItem statusItem;
    FakeKeychain keychain;
    FakePasteboard pasteboard;
    FakeScheduler scheduler;
    std::unique_ptr<AppDelegate> delegate;
};

const Log closedPlan{"front icon", "front emoji", "out main", "front watched", "hide and unhide"};
const Log openPlan{"front icon", "front emoji", "front main", "out watched"};
const Log hiddenPlan{"out icon", "out main", "out emoji", "out watched"};

// The camera key is pressed after the windows have changed.
Log withCameraKey(Log plan) {
    plan.insert(plan.end(), {"hide and unhide", "await focus 250"});
    return plan;
}

TEST_F(AppObserverTest, WindowsAndMenuFollowTheFrontmostApplicationAndTheMenu) {
    AppObserver& observer = launch();
    const auto inFront = [&](const std::string& identifier) {
        since();
        workspace.bringToFront(identifier);
        return since();
    };
    EXPECT_EQ(statusItem.titles(), (Log{"Disable on Guild Wars 2", "Fill credentials", "-", "Quit"}));
    EXPECT_EQ(inFront(""), hiddenPlan);
    EXPECT_EQ(inFront(game), closedPlan);
    observer.iconPressed();
    EXPECT_EQ(since(), openPlan);
    EXPECT_EQ(inFront(ownIdentifier), openPlan);
    EXPECT_EQ(inFront("org.other"), hiddenPlan);
    EXPECT_EQ(inFront(game), openPlan);
    observer.closePressed();

    EXPECT_EQ(inFront("org.other"), hiddenPlan);
    for (const auto& [titleBefore, plan] :
         {std::pair("Enable on org.other", closedPlan), std::pair("Disable on org.other", hiddenPlan)}) {
        EXPECT_EQ(statusItem.titles()[0], titleBefore);
        statusItem.press(0);
        EXPECT_EQ(since(), plan);
    }
    statusItem.press(3);
    EXPECT_EQ(quits, 1);

    // Vantor itself is not shut out by it, but let in again.
    workspace.bringToFront(ownIdentifier);
    EXPECT_FALSE(statusItem.menu[0].enabled);
    EXPECT_FALSE(delegate->menuEntries()[0].enabled);
    EXPECT_FALSE(observer.toggleApp());
    defaults.put(settings::enabledApplications, Log{game});
    EXPECT_TRUE(observer.toggleApp());
    EXPECT_EQ(defaults.get<Log>(settings::enabledApplications), (Log{game, ownIdentifier}));
}

TEST_F(AppObserverTest, OnlyHotkeysReplayTheCameraKey) {
    AppObserver& observer = launch();
    release(escape, 0);
    EXPECT_EQ(since(), closedPlan);
    release(keyT, modifier::command);
    EXPECT_EQ(since(), withCameraKey(openPlan));
    release(escape, modifier::shift);
    EXPECT_EQ(since(), withCameraKey(closedPlan));
    // In Vantor's own window the key toggles once and goes on to the view.
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyUp, keyT, modifier::command, "t"}),
              KeyMonitors::Passing::passOn);
    EXPECT_EQ(since(), withCameraKey(openPlan));
    EXPECT_EQ(poster.posted.size(), 6U);

    observer.closePressed();
    observer.iconPressed();
    observer.closePressed();
    EXPECT_EQ(poster.posted.size(), 6U);

    // Over another application the wish is flipped all the same.
    workspace.bringToFront("org.other");
    since();
    release(keyT, modifier::command);
    EXPECT_TRUE(observer.visible());
    EXPECT_EQ(since(), withCameraKey(hiddenPlan));
}

TEST_F(AppObserverTest, TakesTheFocusWhileTheOverlayIsOpenAndTheGameHoldsThePointer) {
    const auto takesWithin = [&](int time) {
        since();
        scheduler.advance(milliseconds(time));
        const Log told = since();
        EXPECT_TRUE(told.empty() || told == Log{"focus main"});
        return !told.empty();
    };
    workspace.hold = PointerHold::lasting;
    AppObserver& observer = launch();
    EXPECT_FALSE(takesWithin(2000)) << "closed";
    release(keyT, modifier::command);
    // The camera key goes to the game, which reads it while it still has the keyboard.
    EXPECT_FALSE(takesWithin(99));
    EXPECT_TRUE(takesWithin(1));
    workspace.bringToFront(ownIdentifier);
    EXPECT_FALSE(takesWithin(2000));
    // The game has the focus again, as after typing, and does not hold the pointer yet; a menu is open meanwhile.
    workspace.hold = PointerHold::passing;
    workspace.bringToFront(game);
    EXPECT_FALSE(takesWithin(60'000));
    workspace.hold = PointerHold::none;
    EXPECT_TRUE(takesWithin(100));
    observer.closePressed();
    EXPECT_FALSE(takesWithin(2000));

    // Where nobody holds it, soon nothing is looked at.
    observer.openOverlay();
    EXPECT_FALSE(takesWithin(2000));
    EXPECT_EQ(scheduler.waiting(), 0U);
    workspace.bringToFront(game);
    EXPECT_FALSE(takesWithin(200));
    workspace.hold = PointerHold::lasting;
    EXPECT_TRUE(takesWithin(100));
    observer.closePressed();
    // Nor is it taken where the overlay may not stand over Vantor.
    defaults.put(settings::enabledApplications, Log{game});
    observer.openOverlay();
    EXPECT_FALSE(takesWithin(2000));
}

TEST_F(AppObserverTest, PastesAndWithholdsTheShortcutOnlyInTheGameWhileClosed) {
    defaults.put(settings::pasteClipboard, true);
    pasteboard.held = "tv";
    AppObserver& observer = launch();
    const auto pastes = [&] {
        poster.posted.clear();
        pause.waits.clear();
        release(keyV, modifier::command);
        EXPECT_EQ(*monitors.withheld, poster.posted.empty() ? 0 : 1) << "what pastes is kept from the game";
        // Command and V are up before the typing starts.
        EXPECT_TRUE(poster.posted.empty() || pause.waits.at(0) == milliseconds(600));
        return poster.posted.size() == 4;
    };
    EXPECT_TRUE(pastes());
    observer.openOverlay();
    EXPECT_FALSE(pastes());
    observer.closePressed();
    EXPECT_TRUE(pastes());
    for (const bool on : {false, true}) {
        ASSERT_EQ(defaults.setValue(settings::pasteClipboard, on), Defaults::Verdict::stored);
        EXPECT_EQ(pastes(), on);
    }
    observer.toggleApp();
    EXPECT_FALSE(pastes());
    workspace.bringToFront("org.other");
    EXPECT_FALSE(pastes());
    EXPECT_FALSE(observer.visible());
}

TEST_F(AppObserverTest, PublishesTheTimelineAndFollowsTheZone) {
    storeKey("key");
    GameData& data = launch().data();
    EXPECT_EQ(asked(), Log{"https://api/v2/account/achievements"});
    answer("[]");
    EXPECT_EQ(asked(), (Log{"qrc:/catalogue/events.json", "qrc:/catalogue/categories/beasts.json"}));

    int notices = 0;
    const auto subscription = data.observe([&] { ++notices; });
    ASSERT_TRUE(session.answer(catalogue));
    queue.runAll();
    EXPECT_EQ(notices, 0) << "views hear of it on the main thread only";
    settle();
    EXPECT_GT(notices, 0);
    const auto first = data.timeline();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->events.size(), 13U);
    EXPECT_EQ(first->events[0].startMinute, 0);
    delegate->appObserver().updateWindows();
    settle();
    EXPECT_EQ(data.timeline(), first) << "computed again for nothing";

    clock.setOffset(7200);
    notices = 0;
    delegate->appObserver().updateWindows();  // a window comes up
    settle();
    const auto second = data.timeline();
    ASSERT_NE(second, first);
    EXPECT_GT(notices, 0);
    EXPECT_EQ(second->events[0].startMinute, 120);
    EXPECT_EQ(first->events[0].startMinute, 0) << "a snapshot never changes";

    defaults.put(settings::timerIsEvent, false);
    data.reloadEvents();
    EXPECT_EQ(asked(), Log{}) << "nothing is fetched anew";
    EXPECT_TRUE(data.timeline()->events.empty());
    EXPECT_EQ(printed, Log{});
    EXPECT_EQ(stopped, Log{});
}

TEST_F(AppObserverTest, AnInconsistentScheduleStopsTheProgram) {
    storeKey("key");
    launch();
    settle();
    answer("[]");
    std::string broken = catalogue;
    broken.replace(broken.find("\"r\":7"), 5, "\"r\":8");
    answer(broken);
    ASSERT_EQ(stopped.size(), 1U);
    EXPECT_NE(stopped[0].find("World bosses"), std::string::npos);
    EXPECT_EQ(stopped[0].find('\n'), std::string::npos);
    EXPECT_FALSE(delegate->appObserver().data().timeline());
}

}  // namespace
}  // namespace vantor
