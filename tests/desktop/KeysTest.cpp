// Keys on a real X server: what is posted arrives in the focused client, other clients' keys reach the global monitors,
// keys in windows of ours the local ones, and our own posts none.

#include <gtest/gtest.h>

#include <QtCore/QEventLoop>
#include <QtCore/QScopeGuard>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

#include "ComesTrue.h"
#include "Player.h"
#include "Typist.h"
#include "platform/KeyClasses.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/RawKeyMonitors.h"
#include "platform/linux/services/Doctor.h"

namespace vantor {
namespace {

using namespace modifier;
using Events = std::vector<KeyEvent>;

constexpr auto keyDown = KeyEventType::keyDown;
constexpr auto keyUp = KeyEventType::keyUp;
constexpr auto flagsChanged = KeyEventType::flagsChanged;
constexpr KeyEventMask everyType = maskOf(keyDown) | maskOf(keyUp) | maskOf(flagsChanged);
const Events cPressed = {{keyDown, 8, 0, "c"}, {keyUp, 8, 0, "c"}};

// Names a display that no server has, for as long as the guard lives.
auto withoutServer() {
    auto guard = qScopeGuard([before = qgetenv("DISPLAY")] { qputenv("DISPLAY", before); });
    qputenv("DISPLAY", ":971");
    return guard;
}

class KeysTest : public testing::Test, protected Typist {
protected:
    void SetUp() override {
        player.letGo();
        player.takeFocus();
        (void)player.typed();
        (void)player.keysSeen();
        ASSERT_TRUE(connection.hasTest() && connection.hasRawKeys() && connection.hasKeyboard());
    }
    void press(KeyCode code, bool down) { player.press(*xKeycodeOf(code), down); }
    void tap(KeyCode code) { player.tap(*xKeycodeOf(code)); }
    // A key of another program that closes what came before: once it is seen, all earlier ones have been.
    bool globalSettles() {
        const std::size_t before = markers;
        tap(markerKey);
        return comesTrue([&] { return markers == before + 1; });
    }
    // What the global monitors heard since they were last asked.
    Events heard() {
        EXPECT_TRUE(globalSettles());
        return std::exchange(global, {});
    }
    void hear(const KeyEvent& event) {
        if (event.keyCode != markerKey) {
            global.push_back(event);
        } else if (event.type == keyUp) {
            ++markers;
        }
    }
    std::unique_ptr<QWindow> ownFocusedWindow() {
        auto window = std::make_unique<QWindow>();
        window->setFlags(Qt::BypassWindowManagerHint);
        window->setGeometry(100, 100, 80, 80);
        window->show();
        const auto id = static_cast<xcb_window_t>(window->winId());
        EXPECT_TRUE(comesTrue([&] { return window->isExposed(); }));
        EXPECT_TRUE(comesTrue([&] { return player.giveFocus(id), player.focus() == id; }));
        EXPECT_TRUE(comesTrue([&] { return QGuiApplication::focusWindow() == window.get(); }));
        return window;
    }
    // Ends our connection from outside, as any client may.
    void loseConnection() {
        const std::uint32_t resource = xcb_generate_id(connection.get());
        xcb_create_pixmap(connection.get(), 1, resource, connection.root(), 1, 1);
        settle();
        player.killClientOf(resource);
    }
    // A connection's end shows by that of its window.
    [[nodiscard]] bool hasWindow() const {
        const auto tree =
            owned(xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), connection.root()), nullptr));
        const auto* setup = xcb_get_setup(connection.get());
        const auto* windows = xcb_query_tree_children(tree.get());
        return std::any_of(windows, windows + tree->children_len, [&](xcb_window_t window) {
            return (window & ~setup->resource_id_mask) == setup->resource_id_base;
        });
    }

    static constexpr KeyCode markerKey = 101;  // F9
    static constexpr KeyCode superKey = 55;
    Player& player = sharedPlayer();
    RawKeyMonitors monitors{connection, record};
    Events global;
    Events local;
    std::size_t markers = 0;
    int renewals = 0;
    Subscription counting = connection.onRenewal([this] { ++renewals; });
    Subscription globalMonitor = monitors.addGlobalMonitor(everyType, [this](const KeyEvent& event) { hear(event); });
    Subscription localMonitor = monitors.addLocalMonitor(everyType, [this](const KeyEvent& event) {
        local.push_back(event);
        return KeyMonitors::Passing::passOn;
    });
};

TEST_F(KeysTest, OtherKeysReachTheGlobalMonitorsOnceWithTheirFlags) {
    press(56, true);
    tap(4);
    press(superKey, true);
    press(56, false);
    tap(9);
    press(superKey, false);
    tap(87);
    tap(124);
    EXPECT_EQ(heard(), (Events{
                           {flagsChanged, 56, shift, ""},
                           {keyDown, 4, shift, "h"},
                           {keyUp, 4, shift, "h"},
                           {flagsChanged, superKey, shift | command, ""},
                           {flagsChanged, 56, command, ""},
                           {keyDown, 9, command, "v"},
                           {keyUp, 9, command, "v"},
                           {flagsChanged, superKey, 0, ""},
                           {keyDown, 87, numericPad, "5"},
                           {keyUp, 87, numericPad, "5"},
                           {keyDown, 124, function, ""},
                           {keyUp, 124, function, ""},
                       }));
    // A lock's key, and one that another program put on.
    tap(57);
    tap(0);
    player.lock(0);
    tap(0);
    const Events lockedThenNot = {{flagsChanged, 57, capsLock, ""},
                                  {flagsChanged, 57, capsLock, ""},
                                  {keyDown, 0, capsLock, "a"},
                                  {keyUp, 0, capsLock, "a"},
                                  {keyDown, 0, 0, "a"},
                                  {keyUp, 0, 0, "a"}};
    EXPECT_EQ(heard(), lockedThenNot);
    EXPECT_EQ(local, Events());
    globalMonitor.reset();
    tap(0);
    const auto again = monitors.addGlobalMonitor(maskOf(keyUp), [this](const KeyEvent& event) { hear(event); });
    tap(1);
    const auto after = heard();  // the key before may be read only now
    EXPECT_TRUE(!after.empty() && after.back() == (KeyEvent{keyUp, 1, 0, "s"}));
}

TEST_F(KeysTest, PostedTextArrivesAndIsToldFromThePlayersPressesOfTheSameKeys) {
    post(strokesOfText(map, "Hello, \"World\" [&AgEAWgAA=]!\n"));
    EXPECT_EQ(player.typedText(), "Hello, \"World\" [&AgEAWgAA=]!\r");
    for (int round = 0; round < 20; ++round) {
        post(strokesOfText(map, "a"));
        tap(0);
        post(strokesOfReadableKeys(map, "⇧ + F1"));
    }
    const auto played = heard();
    EXPECT_EQ(played.size(), 40U);
    EXPECT_TRUE(std::all_of(played.begin(), played.end(), [](const KeyEvent& each) { return each.keyCode == 0; }));
    // Nor does what Vantor holds change them.
    post({{56, 0, true}});
    tap(0);
    post({{56, 0, false}});
    EXPECT_EQ(heard(), (Events{{keyDown, 0, 0, "a"}, {keyUp, 0, 0, "a"}}));
    EXPECT_TRUE(record.empty());
    EXPECT_EQ(poster.post({52, 0, true}), PostVerdict::noSuchKey);
    // What never comes back is not taken for a later key of the player's.
    record.posted(xkey::a, true);
    record.answered(PostedKeyRecord::Clock::now() - PostedKeyRecord::lifetime * 2);
    EXPECT_EQ(heard(), Events());
    tap(0);
    EXPECT_EQ(heard(), (Events{{keyDown, 0, 0, "a"}, {keyUp, 0, 0, "a"}}));
}

TEST_F(KeysTest, AKeyIsHeardAtOnceThoughAnotherReplyReadItFromTheSocket) {
    tap(0);
    settle();
    QEventLoop loop;
    auto quit = monitors.addGlobalMonitor(maskOf(keyUp), [&](const KeyEvent&) { loop.quit(); });
    QTimer::singleShot(10000, &loop, [&] { loop.exit(1); });
    EXPECT_EQ(loop.exec(), 0) << "the key waits until the next one";
    EXPECT_EQ(global, (Events{{keyDown, 0, 0, "a"}, {keyUp, 0, 0, "a"}}));
}

TEST_F(KeysTest, KeysInOwnWindowsReachTheLocalMonitorsOnlyAndMayBeSwallowed) {
    const auto window = ownFocusedWindow();
    struct Counter : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            delivered += event->type() == QEvent::KeyPress;
            return false;
        }
        int delivered = 0;
    } counter;
    window->installEventFilter(&counter);
    local.clear();
    press(56, true);
    tap(4);
    press(56, false);
    tap(122);
    ASSERT_TRUE(comesTrue([&] { return local.size() >= 6; }));
    EXPECT_EQ(local, (Events{{flagsChanged, 56, shift, ""},
                             {keyDown, 4, shift, "h"},
                             {keyUp, 4, shift, "h"},
                             {flagsChanged, 56, 0, ""},
                             {keyDown, 122, function, ""},
                             {keyUp, 122, function, ""}}));
    EXPECT_EQ(counter.delivered, 3);
    auto swallowing =
        monitors.addLocalMonitor(maskOf(keyDown), [](const KeyEvent&) { return KeyMonitors::Passing::swallow; });
    tap(8);
    ASSERT_TRUE(comesTrue([&] { return local.back() == cPressed.back(); }));
    EXPECT_EQ(counter.delivered, 3) << "a swallowed key reaches the window";
    swallowing.reset();

    // A long text typed into a window of ours is no player's key, however late the toolkit delivers it.
    local.clear();
    post(strokesOfText(map, std::string(200, 'A')));
    ASSERT_TRUE(comesTrue([&] { return counter.delivered == 3 + 400; }));
    tap(8);
    ASSERT_TRUE(comesTrue([&] { return !local.empty() && local.back().type == keyUp; }));
    EXPECT_EQ(local, cPressed);
    player.takeFocus();
    EXPECT_EQ(heard(), Events());

    // A click brings what is held: that key went to another program.
    press(56, true);
    local.clear();
    player.click(140, 140);
    EXPECT_TRUE(comesTrue([&] { return local == Events{{flagsChanged, 56, shift, ""}}; }));
    press(56, false);
    (void)heard();

    // While a menu of ours holds the keyboard, a key counts once: by the focus it is another program's.
    ASSERT_TRUE(window->setKeyboardGrabEnabled(true));
    local.clear();
    const int before = counter.delivered;
    tap(8);
    EXPECT_TRUE(comesTrue([&] { return counter.delivered > before; }));
    EXPECT_EQ(heard(), cPressed);
    EXPECT_EQ(local, Events());
    window->setKeyboardGrabEnabled(false);

    // What another program was given is heard, though the focus is here by the time that the stream is read.
    tap(8);
    player.giveFocus(static_cast<xcb_window_t>(window->winId()));
    ASSERT_TRUE(comesTrue([&] { return QGuiApplication::focusWindow() == window.get(); }));
    player.takeFocus();
    EXPECT_EQ(heard(), cPressed);
}

TEST_F(KeysTest, KeepsAKeyWithSuperFromTheGameAndGivesTheKeyboardBackAtOnce) {
    auto withheld = monitors.withholdWithCommand(key_code::v);
    ASSERT_TRUE(withheld);
    constexpr auto command = xkey::superLeft;
    // Whether the game, which the server tells in its own time, gets these keys and no other.
    const auto gameSees = [&](const Player::Keys& expected) {
        Player::Keys seen;
        const bool same = comesTrue([&] {
            for (const auto& each : player.keysSeen()) seen.push_back(each);
            return seen.size() >= expected.size();
        });
        return same && seen == expected;
    };
    const std::uint8_t marker = *xKeycodeOf(markerKey);
    const Player::Keys vFirst = {{command, true}, {xkey::v, false}, {command, false}, {marker, true}, {marker, false}};
    const Player::Keys superFirst = {
        {command, true}, {command, false}, {xkey::v, false}, {marker, true}, {marker, false}};
    for (const auto locked : std::to_array<std::uint8_t>({0, xmod::caps, xmod::num, xmod::caps | xmod::num})) {
        for (const bool superGoesFirst : {false, true}) {
            SCOPED_TRACE(std::to_string(locked) + (superGoesFirst ? ", Super let go first" : ""));
            player.lock(locked);
            (void)player.keysSeen();
            const int grabs = player.grabsSeen();
            player.press(command, true);
            player.press(xkey::v, true);
            player.press(superGoesFirst ? command : xkey::v, false);
            // The key repeats meanwhile, and is taken again.
            EXPECT_TRUE(!superGoesFirst || comesTrue([&] { return player.grabsSeen() >= grabs + 2; }));
            player.press(superGoesFirst ? xkey::v : command, false);
            const auto played = heard();
            EXPECT_TRUE(gameSees(superGoesFirst ? superFirst : vFirst));
            EXPECT_EQ(
                std::count_if(played.begin(), played.end(),
                              [](const KeyEvent& each) { return each.type == keyUp && each.keyCode == key_code::v; }),
                1);
        }
    }
    player.lock(0);
    player.tap(xkey::v);
    EXPECT_TRUE(gameSees({{xkey::v, true}, {xkey::v, false}})) << "V by itself is the game's";
    withheld.reset();
    player.press(command, true);
    player.tap(xkey::v);
    player.press(command, false);
    EXPECT_TRUE(gameSees({{command, true}, {xkey::v, true}, {xkey::v, false}, {command, false}}));

    // What another program holds stays its own; then all is as without.
    auto* const other = player.server().get();
    xcb_grab_key(other, 0, player.server().root(), XCB_MOD_MASK_4, xkey::v, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    player.settle();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(monitors.withholdWithCommand(key_code::v));
    EXPECT_FALSE(monitors.withholdWithCommand(key_code::v));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    xcb_ungrab_key(other, xkey::v, player.server().root(), XCB_MOD_MASK_ANY);
    player.settle();
    EXPECT_TRUE(monitors.withholdWithCommand(key_code::v));
}

TEST_F(KeysTest, FollowsAChangeOfTheLayout) {
    const auto characters = [&](KeyCode code) {
        tap(code);
        const auto events = heard();
        return events.empty() ? std::string() : events.front().charactersWithoutModifiers;
    };
    EXPECT_EQ(characters(6), "z");
    ASSERT_EQ(std::system("setxkbmap de"), 0);
    EXPECT_EQ(characters(6), "y");
    ASSERT_EQ(std::system("setxkbmap us"), 0);
    EXPECT_EQ(characters(6), "z");
}

TEST_F(KeysTest, ReleasesWhatItHoldsWhenItEnds) {
    {
        XTestKeyPoster shortLived(connection, record, layout);
        ASSERT_EQ(shortLived.post({56, 0, true}), PostVerdict::posted);
    }
    settle();
    tap(0);
    EXPECT_EQ(player.typedText(), "a");
}

TEST_F(KeysTest, ALostConnectionIsRenewedAndEveryMonitorGoesOn) {
    for (int loss = 1; loss <= 3; ++loss) {
        press(56, true);
        (void)heard();
        loseConnection();
        const bool letGo = loss == 3;  // unseen; else the hand does not move
        if (letGo) press(56, false);
        ASSERT_TRUE(comesTrue([&] { return renewals == loss; }));
        tap(4);
        if (!letGo) press(56, false);
        const Events withShift = {{keyDown, 4, shift, "h"}, {keyUp, 4, shift, "h"}, {flagsChanged, 56, 0, ""}};
        EXPECT_EQ(heard(), letGo ? (Events{{keyDown, 4, 0, "h"}, {keyUp, 4, 0, "h"}}) : withShift);
        (void)player.typed();
        post(strokesOfText(map, "Again."));
        EXPECT_EQ(player.typedText(), "Again.");
        EXPECT_EQ(heard(), Events()) << "Vantor heard itself";
    }
    const auto window = ownFocusedWindow();
    local.clear();
    tap(8);
    ASSERT_TRUE(comesTrue([&] { return local.size() >= 2; }));
    EXPECT_EQ(local, cPressed);
    player.takeFocus();
}

TEST_F(KeysTest, ATextEndsWhereTheConnectionIsLostAndTheNextOneIsWhole) {
    const auto strokes = strokesOfText(map, "Half Way.");
    XTestKeyPoster guarded(connection, record, layout, guardianProgram());
    for (std::size_t point = 0; point < 2 * strokes.size(); ++point) {
        SCOPED_TRACE(point);
        XTestKeyPoster& typing = point % 2 == 0 ? poster : guarded;
        player.lock(xmod::caps);
        player.press(xkey::shiftRight, true);
        {
            const auto span = typing.beginTyping();
            for (std::size_t at = 0; at < point / 2; ++at) ASSERT_EQ(typing.post(strokes[at]), PostVerdict::posted);
            loseConnection();
            EXPECT_EQ(typing.post(strokes[point / 2]), PostVerdict::lost);
            EXPECT_EQ(typing.post(strokes[point / 2]), PostVerdict::lost) << "what is left of a text is not typed";
        }
        player.press(xkey::shiftRight, false);
        EXPECT_EQ(player.condition(), "held 0 latched 0 locked 2 group 0 keys");
        player.lock(0);
        (void)player.typed();
        {
            const auto span = typing.beginTyping();
            EXPECT_TRUE(hasWindow()) << "a guardian would clear up too early";
            for (const auto& each : strokes) ASSERT_EQ(typing.post(each), PostVerdict::posted);
            settle();
        }
        EXPECT_EQ(player.typedText(), "Half Way.");
        EXPECT_TRUE(player.isAtRest());
    }
    (void)heard();
    tap(8);
    EXPECT_EQ(heard(), cPressed);
}

TEST_F(KeysTest, WhileTheServerTakesNoConnectionTheLossShowsAndItIsTriedAgain) {
    {
        const auto noServer = withoutServer();
        loseConnection();
        EXPECT_TRUE(comesTrue([&] { return !monitors.available(); }));
        EXPECT_EQ(poster.beginTyping(), nullptr);
        EXPECT_EQ(poster.post({0, 0, true}), PostVerdict::lost);
        EXPECT_TRUE(connection.isLost());
        const std::vector<Capability> capabilities = withoutKeys({{CapabilityKind::display, true, ""},
                                                                  {CapabilityKind::rawKeys, true, ""},
                                                                  {CapabilityKind::posting, true, ""}});
        EXPECT_TRUE(capabilities[0].present && !capabilities[1].present && !capabilities[2].present);
    }
    ASSERT_TRUE(comesTrue([&] { return renewals == 1; }));
    EXPECT_TRUE(monitors.available());
    EXPECT_TRUE(player.isAtRest());
    tap(8);
    EXPECT_EQ(heard(), cPressed);
    EXPECT_EQ(player.typedText(), "c");
}

TEST(KeysWithoutADisplay, AreNamedAbsentAndHarmless) {
    const auto noServer = withoutServer();
    Typist typist;
    EXPECT_EQ(typist.connection.verdict(), XConnection::Verdict::noDisplay);
    EXPECT_EQ(typist.poster.post({0, 0, true}), PostVerdict::unavailable);
    EXPECT_TRUE(typist.record.empty());
    EXPECT_FALSE(typist.layout.available());
    RawKeyMonitors monitors(typist.connection, typist.record);
    EXPECT_FALSE(monitors.available());
    const auto subscription = monitors.addGlobalMonitor(everyType, [](const KeyEvent&) {});
}

}  // namespace
}  // namespace vantor
