// Keys on a real X server: what is posted arrives in the focused client, other clients' keys reach the global monitors,
// keys in windows of ours the local ones, and our own posts none.

#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "input/KeyStrokes.h"
#include "platform/KeyClasses.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/RawKeyMonitors.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "platform/linux/services/Doctor.h"

namespace vantor {
namespace {

using namespace modifier;

constexpr auto keyDown = KeyEventType::keyDown;
constexpr auto keyUp = KeyEventType::keyUp;
constexpr auto flagsChanged = KeyEventType::flagsChanged;
constexpr KeyCode superKey = 55;
constexpr KeyEventMask everyType = maskOf(keyDown) | maskOf(keyUp) | maskOf(flagsChanged);

bool comesTrue(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 10000) return false;
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

// Another program with a window of its own that has the focus and writes down what is typed into it.
class OtherClient {
public:
    OtherClient() {
        const std::uint32_t values[] = {
            1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE};
        xcb_create_window(server_.get(), XCB_COPY_FROM_PARENT, window_, server_.root(), 10, 10, 50, 50, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(server_.get(), window_);
        takeFocus(window_);
    }
    void takeFocus(xcb_window_t window) {
        xcb_set_input_focus(server_.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        roundTrip();
    }
    void takeFocus() { takeFocus(window_); }
    [[nodiscard]] xcb_window_t focus() {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(server_.get(), xcb_get_input_focus(server_.get()), nullptr));
        return reply ? reply->focus : xcb_window_t{XCB_NONE};
    }
    // As a player's hand, or another program's: not one of our posts.
    void press(KeyCode code, bool down) {
        xcb_test_fake_input(server_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, *xKeycodeOf(code), XCB_CURRENT_TIME,
                            server_.root(), 0, 0, 0);
        roundTrip();
    }
    void tap(KeyCode code) {
        press(code, true);
        press(code, false);
    }
    void killClientOf(std::uint32_t resource) {
        xcb_kill_client(server_.get(), resource);
        roundTrip();
    }
    [[nodiscard]] bool anyKeyIsDown() {
        const XReply<xcb_query_keymap_reply_t> down(
            xcb_query_keymap_reply(server_.get(), xcb_query_keymap(server_.get()), nullptr));
        return !down || std::any_of(std::begin(down->keys), std::end(down->keys), [](auto each) { return each != 0; });
    }
    // The keys since it was last asked, as "v" for a press and "v^" for a release of the key V.
    std::string keysSeen() {
        readKeys();
        return std::exchange(seen_, {});
    }
    // How often the keyboard was taken from this client, since the same moment.
    int grabsSeen() {
        readKeys();
        return grabs_;
    }
    // Takes the key with Super, or lets it go.
    void grabSuperV(bool wanted) {
        if (wanted) {
            xcb_grab_key(server_.get(), 0, server_.root(), XCB_MOD_MASK_4, *xKeycodeOf(key_code::v),
                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        } else {
            xcb_ungrab_key(server_.get(), *xKeycodeOf(key_code::v), server_.root(), XCB_MOD_MASK_ANY);
        }
        roundTrip();
    }
    void lock(std::uint8_t modifiers) {
        xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0xff, modifiers, 0, 0, 0, 0, 0);
        roundTrip();
    }
    // The text of the keys so far, read with the modifiers and group that each event carries.
    std::string typedText() {
        roundTrip();
        std::string text;
        const XkbKeymap keymap = coreKeymap(server_);
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(server_.get())}) {
            if ((event->response_type & 0x7f) != XCB_KEY_PRESS) continue;
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            const XkbState state(xkb_state_new(keymap.get()));
            xkb_state_update_mask(state.get(), key.state & 0xff, 0, 0, 0, 0, key.state >> 13 & 3);
            std::array<char, 16> characters{};
            const int length = xkb_state_key_get_utf8(state.get(), key.detail, characters.data(), characters.size());
            text.append(characters.data(), static_cast<std::size_t>(length));
        }
        return text;
    }

private:
    void roundTrip() { (void)focus(); }
    void readKeys() {
        roundTrip();
        if (seen_.empty()) grabs_ = 0;
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(server_.get())}) {
            const auto type = event->response_type & 0x7f;
            if (type == XCB_FOCUS_OUT)
                grabs_ += reinterpret_cast<const xcb_focus_out_event_t&>(*event).mode == XCB_NOTIFY_MODE_GRAB;
            if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) continue;
            const auto key = reinterpret_cast<const xcb_key_press_event_t&>(*event).detail;
            const char* name = key == *xKeycodeOf(key_code::v) ? "v" : key == *xKeycodeOf(superKey) ? "Super" : "?";
            seen_ += (seen_.empty() ? "" : " ") + std::string(name) + (type == XCB_KEY_PRESS ? "" : "^");
        }
    }

    std::string seen_;
    int grabs_ = 0;
    XConnection server_;
    xcb_window_t window_ = xcb_generate_id(server_.get());
};

// Ends a connection from outside, as any client may.
void kill(const XConnection& connection, OtherClient& killer) {
    const std::uint32_t resource = xcb_generate_id(connection.get());
    xcb_create_pixmap(connection.get(), 1, resource, connection.root(), 1, 1);
    const XReply<xcb_get_input_focus_reply_t> made(
        xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    ASSERT_TRUE(made);
    killer.killClientOf(resource);
}

// A connection's end shows by that of its window.
bool hasWindow(const XConnection& connection) {
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), connection.root()), nullptr));
    const auto* setup = xcb_get_setup(connection.get());
    const auto* windows = xcb_query_tree_children(tree.get());
    return std::any_of(windows, windows + tree->children_len, [&](xcb_window_t window) {
        return (window & ~setup->resource_id_mask) == setup->resource_id_base;
    });
}

class KeysTest : public testing::Test {
protected:
    // One window for all tests: a focused window that vanishes makes the window manager choose another, at its own
    // time.
    static OtherClient& otherClient() {
        static OtherClient client;
        return client;
    }
    void SetUp() override {
        other.takeFocus();
        (void)other.typedText();
        ASSERT_EQ(connection.verdict(), XConnection::Verdict::connected);
        ASSERT_TRUE(connection.hasTest() && connection.hasRawKeys() && connection.hasKeyboard());
    }
    void post(const std::vector<PostedKey>& strokes) {
        for (const auto& each : strokes) ASSERT_EQ(poster.post(each), PostVerdict::posted);
        settle();
    }
    // The server does one client's requests in order, but promises no order between two.
    void settle() const {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
        ASSERT_TRUE(reply);
    }
    // A key of another program that closes what came before: once it is seen, all earlier ones have been.
    bool globalSettles() {
        const std::size_t before = markers;
        other.tap(markerKey);
        return comesTrue([&] { return markers == before + 1; });
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
        EXPECT_TRUE(comesTrue([&] { return other.takeFocus(id), other.focus() == id; }));
        EXPECT_TRUE(comesTrue([&] { return QGuiApplication::focusWindow() == window.get(); }));
        return window;
    }

    static constexpr KeyCode markerKey = 101;  // F9
    OtherClient& other = otherClient();
    XConnection connection;
    PostedKeyRecord record;
    XkbKeyboardLayout layout{connection};
    XTestKeyPoster poster{connection, record, layout};
    RawKeyMonitors monitors{connection, record};
    std::vector<KeyEvent> global;
    std::vector<KeyEvent> local;
    std::size_t markers = 0;
    Subscription globalMonitor = monitors.addGlobalMonitor(everyType, [this](const KeyEvent& event) { hear(event); });
    Subscription localMonitor = monitors.addLocalMonitor(everyType, [this](const KeyEvent& event) {
        local.push_back(event);
        return KeyMonitors::Passing::passOn;
    });
};

TEST_F(KeysTest, PostedTextArrivesAndEveryMappedCharacterIsTheOneThatIsTyped) {
    const auto map = KeyMap::learn(XkbKeyboardLayout(connection));
    post(strokesOfText(map, "Hello, \"World\" [&AgEAWgAA=]!\n"));
    EXPECT_EQ(other.typedText(), "Hello, \"World\" [&AgEAWgAA=]!\r");
    int checked = 0;
    for (const auto& [text, keys] : map.entries()) {
        if (text == "\n" || text.ends_with(" [NUM]")) continue;
        post(strokesOfText(map, text));
        EXPECT_EQ(other.typedText(), text);
        ++checked;
    }
    EXPECT_GT(checked, 95);
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global, std::vector<KeyEvent>()) << "Vantor heard itself";
    EXPECT_TRUE(record.empty());
    EXPECT_EQ(poster.post({52, 0, true}), PostVerdict::noSuchKey);
}

TEST_F(KeysTest, OtherKeysReachTheGlobalMonitorsOnceWithTheirFlags) {
    other.press(56, true);
    other.tap(4);
    other.press(55, true);
    other.press(56, false);
    other.tap(9);
    other.press(55, false);
    other.tap(87);
    other.tap(124);
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global, (std::vector<KeyEvent>{
                          {flagsChanged, 56, shift, ""},
                          {keyDown, 4, shift, "h"},
                          {keyUp, 4, shift, "h"},
                          {flagsChanged, 55, shift | command, ""},
                          {flagsChanged, 56, command, ""},
                          {keyDown, 9, command, "v"},
                          {keyUp, 9, command, "v"},
                          {flagsChanged, 55, 0, ""},
                          {keyDown, 87, numericPad, "5"},
                          {keyUp, 87, numericPad, "5"},
                          {keyDown, 124, function, ""},
                          {keyUp, 124, function, ""},
                      }));
    EXPECT_EQ(local, std::vector<KeyEvent>());
    global.clear();
    other.tap(57);
    other.tap(0);
    other.tap(57);
    other.tap(0);
    ASSERT_TRUE(globalSettles());
    ASSERT_EQ(global.size(), 8U);
    EXPECT_EQ(global[0], (KeyEvent{flagsChanged, 57, capsLock, ""}));
    EXPECT_EQ(global[3], (KeyEvent{keyUp, 0, capsLock, "a"}));
    EXPECT_EQ(global[7], (KeyEvent{keyUp, 0, 0, "a"}));
    globalMonitor.reset();
    other.tap(0);
    auto again = monitors.addGlobalMonitor(maskOf(keyUp), [this](const KeyEvent& event) { hear(event); });
    global.clear();
    other.tap(1);
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global.back(), (KeyEvent{keyUp, 1, 0, "s"}));
}

TEST_F(KeysTest, TellsItsOwnPostFromThePlayersPressOfTheSameKey) {
    const auto map = KeyMap::learn(XkbKeyboardLayout(connection));
    for (int round = 0; round < 20; ++round) {
        post(strokesOfText(map, "a"));
        other.tap(0);
        post(strokesOfReadableKeys(map, "⇧ + F1"));
    }
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global.size(), 40U);
    EXPECT_TRUE(std::all_of(global.begin(), global.end(), [](const KeyEvent& each) { return each.keyCode == 0; }));
    EXPECT_TRUE(record.empty());
}

TEST_F(KeysTest, AKeyIsHeardAtOnceThoughAnotherReplyReadItFromTheSocket) {
    other.tap(0);
    settle();
    QEventLoop loop;
    auto quit = monitors.addGlobalMonitor(maskOf(keyUp), [&](const KeyEvent&) { loop.quit(); });
    QTimer::singleShot(10000, &loop, [&] { loop.exit(1); });
    EXPECT_EQ(loop.exec(), 0) << "the key waits until the next one";
    EXPECT_EQ(global, (std::vector<KeyEvent>{{keyDown, 0, 0, "a"}, {keyUp, 0, 0, "a"}}));
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
    global.clear();
    local.clear();
    other.press(56, true);
    other.tap(4);
    other.press(56, false);
    other.tap(122);
    ASSERT_TRUE(comesTrue([&] { return local.size() >= 6; }));
    EXPECT_EQ(local, (std::vector<KeyEvent>{{flagsChanged, 56, shift, ""},
                                            {keyDown, 4, shift, "h"},
                                            {keyUp, 4, shift, "h"},
                                            {flagsChanged, 56, 0, ""},
                                            {keyDown, 122, function, ""},
                                            {keyUp, 122, function, ""}}));
    EXPECT_EQ(counter.delivered, 3);
    auto swallowing =
        monitors.addLocalMonitor(maskOf(keyDown), [](const KeyEvent&) { return KeyMonitors::Passing::swallow; });
    other.tap(8);
    ASSERT_TRUE(comesTrue([&] { return local.back() == KeyEvent{keyUp, 8, 0, "c"}; }));
    EXPECT_EQ(counter.delivered, 3) << "a swallowed key reaches the window";
    swallowing.reset();

    // A long text typed into a window of ours is no player's key, however late the toolkit delivers it.
    local.clear();
    const auto map = KeyMap::learn(XkbKeyboardLayout(connection));
    post(strokesOfText(map, std::string(200, 'A')));
    ASSERT_TRUE(comesTrue([&] { return counter.delivered == 3 + 400; }));
    other.tap(8);
    ASSERT_TRUE(comesTrue([&] { return !local.empty() && local.back().type == keyUp; }));
    EXPECT_EQ(local, (std::vector<KeyEvent>{{keyDown, 8, 0, "c"}, {keyUp, 8, 0, "c"}}));
    other.takeFocus();
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global, std::vector<KeyEvent>());
}

TEST_F(KeysTest, KeepsAKeyWithSuperFromTheGameAndGivesTheKeyboardBackAtOnce) {
    auto withheld = monitors.withholdWithCommand(key_code::v);
    ASSERT_TRUE(withheld);
    // Empty once it has seen just that.
    const auto gameSees = [&](const std::string& expected) {
        std::string seen;
        const bool same = comesTrue([&] {
            const std::string more = other.keysSeen();
            seen += (seen.empty() || more.empty() ? "" : " ") + more;
            return seen == expected;
        });
        return same ? std::string() : seen;
    };
    for (const auto locked : std::to_array<std::uint8_t>({0, 2, 16, 18})) {  // Caps Lock, Num Lock, both
        for (const bool superFirst : {false, true}) {
            SCOPED_TRACE(std::to_string(locked) + (superFirst ? ", Super let go first" : ""));
            other.lock(locked);
            (void)other.keysSeen();
            global.clear();
            other.press(superKey, true);
            other.press(key_code::v, true);
            other.press(superFirst ? superKey : key_code::v, false);
            // The key repeats meanwhile, and is taken again.
            EXPECT_TRUE(!superFirst || comesTrue([&] { return other.grabsSeen() >= 2; }));
            other.press(superFirst ? key_code::v : superKey, false);
            ASSERT_TRUE(globalSettles());
            EXPECT_EQ(gameSees(superFirst ? "Super Super^ v^ ? ?^" : "Super v^ Super^ ? ?^"), "");
            EXPECT_EQ(
                std::count_if(global.begin(), global.end(),
                              [](const KeyEvent& each) { return each.type == keyUp && each.keyCode == key_code::v; }),
                1);
        }
    }
    other.lock(0);
    other.tap(key_code::v);
    EXPECT_EQ(gameSees("v v^"), "") << "V by itself is the game's";
    withheld.reset();
    other.press(superKey, true);
    other.tap(key_code::v);
    other.press(superKey, false);
    EXPECT_EQ(other.keysSeen(), "Super v v^ Super^");

    // What another program holds stays its own; then all is as without.
    other.grabSuperV(true);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(monitors.withholdWithCommand(key_code::v));
    EXPECT_FALSE(monitors.withholdWithCommand(key_code::v));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    other.grabSuperV(false);
    EXPECT_TRUE(monitors.withholdWithCommand(key_code::v));
}

TEST_F(KeysTest, FollowsAChangeOfTheLayout) {
    const auto characters = [&](KeyCode code) {
        global.clear();
        other.tap(code);
        EXPECT_TRUE(globalSettles());
        return global.empty() ? std::string() : global.front().charactersWithoutModifiers;
    };
    const auto setLayout = [](const char* name) { return std::system((std::string("setxkbmap ") + name).c_str()); };
    EXPECT_EQ(characters(6), "z");
    ASSERT_EQ(setLayout("de"), 0);
    EXPECT_EQ(characters(6), "y");
    const auto map = KeyMap::learn(XkbKeyboardLayout(connection));
    (void)other.typedText();
    post(strokesOfText(map, "zß@€{"));
    EXPECT_EQ(other.typedText(), "zß@€{");
    ASSERT_EQ(setLayout("us"), 0);
    EXPECT_EQ(characters(6), "z");
}

TEST_F(KeysTest, ReleasesWhatItHoldsWhenItEnds) {
    {
        XTestKeyPoster shortLived(connection, record, layout);
        ASSERT_EQ(shortLived.post({56, 0, true}), PostVerdict::posted);
    }
    settle();
    other.tap(0);
    EXPECT_EQ(other.typedText(), "a");
}

TEST_F(KeysTest, ALostConnectionIsRenewedAndEveryMonitorGoesOn) {
    int renewals = 0;
    const auto counting = connection.onRenewal([&] { ++renewals; });
    for (int loss = 1; loss <= 3; ++loss) {
        other.press(56, true);
        ASSERT_TRUE(globalSettles());
        kill(connection, other);
        ASSERT_TRUE(comesTrue([&] { return renewals == loss; }));
        global.clear();
        // The hand has not moved.
        other.tap(4);
        other.press(56, false);
        ASSERT_TRUE(globalSettles());
        EXPECT_EQ(global,
                  (std::vector<KeyEvent>{{keyDown, 4, shift, "h"}, {keyUp, 4, shift, "h"}, {flagsChanged, 56, 0, ""}}));
        (void)other.typedText();
        global.clear();
        post(strokesOfText(KeyMap::learn(XkbKeyboardLayout(connection)), "Again."));
        EXPECT_EQ(other.typedText(), "Again.");
        ASSERT_TRUE(globalSettles());
        EXPECT_EQ(global, std::vector<KeyEvent>()) << "Vantor heard itself";
    }
    const auto window = ownFocusedWindow();
    local.clear();
    other.tap(8);
    ASSERT_TRUE(comesTrue([&] { return local.size() >= 2; }));
    EXPECT_EQ(local, (std::vector<KeyEvent>{{keyDown, 8, 0, "c"}, {keyUp, 8, 0, "c"}}));
    other.takeFocus();
    ASSERT_TRUE(globalSettles());
}

TEST_F(KeysTest, ATextEndsWhereTheConnectionIsLostAndTheNextOneIsWhole) {
    const auto map = KeyMap::learn(XkbKeyboardLayout(connection));
    const auto strokes = strokesOfText(map, "Half Way.");
    for (std::size_t point = 0; point < strokes.size(); ++point) {
        SCOPED_TRACE(point);
        {
            const auto typing = poster.beginTyping();
            for (std::size_t at = 0; at < point; ++at) ASSERT_EQ(poster.post(strokes[at]), PostVerdict::posted);
            kill(connection, other);
            EXPECT_EQ(poster.post(strokes[point]), PostVerdict::lost);
            EXPECT_EQ(poster.post(strokes[point]), PostVerdict::lost) << "what is left of a text is not typed";
        }
        EXPECT_FALSE(other.anyKeyIsDown());
        (void)other.typedText();
        {
            const auto typing = poster.beginTyping();
            EXPECT_TRUE(hasWindow(connection)) << "a guardian would clear up too early";
            post(strokes);
        }
        EXPECT_EQ(other.typedText(), "Half Way.");
        EXPECT_FALSE(other.anyKeyIsDown());
    }
    ASSERT_TRUE(globalSettles());
    other.tap(8);
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global, (std::vector<KeyEvent>{{keyDown, 8, 0, "c"}, {keyUp, 8, 0, "c"}}));
}

TEST_F(KeysTest, WhileTheServerTakesNoConnectionTheLossShowsAndItIsTriedAgain) {
    int renewals = 0;
    const auto counting = connection.onRenewal([&] { ++renewals; });
    const auto display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":971");
    kill(connection, other);
    EXPECT_TRUE(comesTrue([&] { return !monitors.available(); }));
    EXPECT_EQ(poster.beginTyping(), nullptr);
    EXPECT_EQ(poster.post({0, 0, true}), PostVerdict::lost);
    EXPECT_TRUE(connection.isLost());
    const std::vector<Capability> capabilities =
        withoutKeys({{"display", true, ""}, {"raw keys", true, ""}, {"posting", true, ""}});
    EXPECT_TRUE(capabilities[0].present && !capabilities[1].present && !capabilities[2].present);
    qputenv("DISPLAY", display);
    ASSERT_TRUE(comesTrue([&] { return renewals == 1; }));
    EXPECT_TRUE(monitors.available());
    EXPECT_FALSE(other.anyKeyIsDown());
    global.clear();
    other.tap(8);
    ASSERT_TRUE(globalSettles());
    EXPECT_EQ(global, (std::vector<KeyEvent>{{keyDown, 8, 0, "c"}, {keyUp, 8, 0, "c"}}));
    EXPECT_EQ(other.typedText(), "c");
}

TEST(KeysWithoutADisplay, AreNamedAbsentAndHarmless) {
    const auto display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":971");
    XConnection connection;
    qputenv("DISPLAY", display);
    EXPECT_EQ(connection.verdict(), XConnection::Verdict::noDisplay);
    EXPECT_FALSE(connection.hasTest() || connection.hasRawKeys() || connection.hasKeyboard());
    PostedKeyRecord record;
    const XkbKeyboardLayout layout(connection);
    XTestKeyPoster poster(connection, record, layout);
    EXPECT_EQ(poster.post({0, 0, true}), PostVerdict::unavailable);
    EXPECT_TRUE(record.empty());
    EXPECT_FALSE(layout.available());
    RawKeyMonitors monitors(connection, record);
    EXPECT_FALSE(monitors.available());
    auto subscription = monitors.addGlobalMonitor(everyType, [](const KeyEvent&) {});
}

}  // namespace
}  // namespace vantor
