#include "app/AppObserver.h"

#include "app/AppDelegate.h"
#include "app/WindowPlaces.h"
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
        : name(std::array{"main", "icon", "emoji", "watched", "typing"}.at(static_cast<std::size_t>(window))),
          log(shared) {}
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
        const auto stop = [this](const std::string& line) { stopped.push_back(line); };
        const auto makePage = [] { return std::make_unique<LazyWebPage>([] { return nullptr; }); };
        const auto makeWindow = [this](AppWindowName name, AppObserver&) {
            return std::make_unique<LoggedWindow>(name, workspace.calls);
        };
        const GameData::Needs data{defaults, session, queue, mainThread, clock, {"https://api", "qrc:/catalogue"},
                                   print,    stop};
        const AppObserver::Needs needs{
            data,      monitors,  poster,   layout,    workspace,    statusItem, pasteboard,
            pause,     scheduler, keychain, workspace, typingThread, makePage,   [] { return std::nullopt; },
            makeWindow};
        delegate = std::make_unique<AppDelegate>(needs, [this] { quits++; });
        since();
        return delegate->appObserver();
    }
    // What the windows and the desktop were told since the last look.
    Log since() { return std::exchange(workspace.calls, {}); }
    void release(KeyCode code, ModifierFlags flags) {
        monitors.pressInGame({KeyEventType::keyUp, code, flags, code == keyT ? "t" : code == keyV ? "v" : ""});
        mainThread.runAll();
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

TEST_F(AppObserverTest, TheDesktopsShortcutsActLikeTheKeysWhichThenDoNotActAgain) {
    defaults.put(settings::pasteClipboard, true);
    defaults.put(settings::windowToggleSecondaryEvent, std::string("⌃ + F5"));
    pasteboard.held = "t";
    AppObserver& observer = launch();
    EXPECT_EQ(monitors.offered, (std::vector<DesktopShortcut>{
                                    {"toggle", "Open and close Vantor", "LOGO+t"},
                                    {"toggle-second", "Open and close Vantor, second", "CTRL+F5"},
                                    {"paste", "Type the clipboard into the game", "LOGO+v"},
                                }));
    for (const char* id : {"toggle", "toggle-second"}) {
        const bool visible = observer.visible();
        monitors.activate(id);
        release(keyT, modifier::command);  // what is left of the key
        EXPECT_EQ(observer.visible(), !visible);
        mainThread.runAll();
    }
    EXPECT_EQ(poster.posted.size(), 4U) << "with the camera key";
    monitors.activate("paste");
    mainThread.runAll();
    EXPECT_EQ(poster.posted.size(), 6U);
    monitors.activate("unknown");
    EXPECT_FALSE(observer.visible());
    scheduler.advance(std::chrono::seconds(2));
    release(keyT, modifier::command);
    EXPECT_TRUE(observer.visible()) << "a key of its own acts";
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
        EXPECT_TRUE(poster.posted.empty() || pause.waits.size() == 600 / 20 + 4);
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

const Screen left{{0, 0, 1360, 820}, "LEFT"};
const Screen right{{1360, 0, 1920, 1080}, "RIGHT"};
const std::vector<Screen> one{left};
const std::vector<Screen> two{left, right};

TEST(WindowPlaces, BelongToTheScreenWithMostOfTheGame) {
    EXPECT_EQ(screenOf(std::nullopt, two), left);
    EXPECT_EQ(screenOf(Rect{1000, 0, 800, 600}, two), right);
    EXPECT_EQ(screenOf(Rect{900, 0, 800, 600}, two), left);
    EXPECT_EQ(screenOf(Rect{5000, 0, 800, 600}, two), left);
}

TEST(WindowPlaces, OfTheDaysOfOneMonitorStayWhereTheyWereAndComeBackWhenItIsGone) {
    const struct {
        const char* stored;
        const std::vector<Screen>& screens;
        Rect expected;
    } cases[] = {
        {"100 100 250 60", one, {100, 100, 250, 60}},
        {"1312 100 250 60", one, {1312, 100, 250, 60}},  // partly off, still reachable
        {"1350 100 250 60", one, {1110, 100, 250, 60}},
        {"2000 300 250 60", one, {1110, 300, 250, 60}},
        {"-3000 -400 920 600", one, {0, 0, 920, 600}},
        {"200 -20 920 600", one, {200, 0, 920, 600}},   // the title bar would be out of reach
        {"2040 540 250 60", two, {482, 410, 250, 60}},  // the game is on the other monitor now
        {"5000 900 3000 2000", one, {0, 0, 1360, 820}},
        {"2147483000 0 920 600", one, {440, 0, 920, 600}},
    };
    for (const auto& row : cases) EXPECT_EQ(placeOn(left, row.screens, row.stored, 1, 1), row.expected) << row.stored;
    for (const char* damaged : {"", "1 2 3", "1 2 3 4 5", "1 2 3 0", "1 2 -3 4", " 1 2 3 4", "1,2,3,4", "a 2 3 4",
                                "99999999999 2 3 4", "1 2 3 4 0 820 LEFT", ";;"})
        EXPECT_EQ(placeOn(left, two, damaged, 250, 60), (Rect{555, 380, 250, 60})) << damaged;
}

TEST(WindowPlaces, AreKeptForEachMonitorOfTheGame) {
    const Rect onLeft{100, 100, 250, 60};
    const Rect onRight{3000, 1000, 250, 60};
    const std::string first = withPlace("1 2 3 4", onLeft, left);
    EXPECT_EQ(first, "100 100 250 60 1360 820 LEFT");
    EXPECT_TRUE(isPlainFrame("100 100 250 60", onLeft));
    EXPECT_FALSE(isPlainFrame("9 100 250 60", onLeft) || isPlainFrame(first, onLeft));
    EXPECT_EQ(placeOn(right, two, first, 1, 1), (Rect{1501, 132, 250, 60})) << "in proportion, as long as it has none";
    const std::string both = withPlace(first, onRight, right);
    EXPECT_EQ(placeOn(left, two, both, 1, 1), onLeft);
    EXPECT_EQ(placeOn(right, two, both, 1, 1), onRight);
    const std::string again = withPlace(both, {7, 8, 250, 60}, left);
    EXPECT_EQ(placeOn(left, two, again, 1, 1), (Rect{7, 8, 250, 60}));
    EXPECT_EQ(placeOn(right, two, again, 1, 1), onRight);

    // Kept beside the game by the player, on the other monitor: brought back only when that one is gone.
    const std::string beside = withPlace(both, {1500, 50, 250, 60}, left);
    EXPECT_EQ(placeOn(left, two, beside, 1, 1), (Rect{1500, 50, 250, 60}));
    EXPECT_EQ(placeOn(left, one, beside, 1, 1), (Rect{1110, 50, 250, 60}));
    // The same pixels at twice the scale, as far as there is room.
    const Screen scaled{{0, 0, 680, 410}, "LEFT"};
    EXPECT_EQ(placeOn(scaled, std::vector{scaled}, withPlace("", {600, 400, 250, 60}, left), 1, 1),
              (Rect{300, 200, 250, 60}));
    EXPECT_EQ(placeOn(scaled, std::vector{scaled}, withPlace("", {1110, 760, 250, 60}, left), 1, 1),
              (Rect{430, 350, 250, 60}));
    // Another monitor in its place.
    EXPECT_EQ(placeOn(right, std::vector{right}, withPlace("", onLeft, {left.frame, "a;b"}), 1, 1),
              (Rect{1501, 132, 250, 60}));
}

}  // namespace
}  // namespace vantor
