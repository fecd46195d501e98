// What is typed arrives exactly on a real X server, whatever the player holds, latches, locks or does meanwhile, and
// the keyboard is the player's again afterwards.

#include <gtest/gtest.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtWidgets/QApplication>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "Player.h"
#include "input/KeyStrokes.h"
#include "platform/linux/keys/RawKeyMonitors.h"
#include "platform/linux/keys/XTestKeyPoster.h"

namespace vantor {
namespace {

constexpr const char* text = "Hello, World! zyZY [&AgEAWgAA=] wW 100%\n";
constexpr const char* arriving = "Hello, World! zyZY [&AgEAWgAA=] wW 100%\r";

void setLayout(const char* layouts) {
    ASSERT_EQ(std::system((std::string("setxkbmap -layout ") + layouts).c_str()), 0);
}

class NeutralKeyboardTest : public testing::Test {
protected:
    void SetUp() override {
        setLayout("us,de");
        player.letGo();
        player.takeFocus();
        (void)player.typedText();
    }
    void TearDown() override {
        player.letGo();
        setLayout("us");
    }
    // Vantor as it is when started now.
    struct Typist {
        XConnection connection;
        XkbKeyboardLayout layout{connection};
        KeyMap map = KeyMap::learn(layout);
        PostedKeyRecord record;
        XTestKeyPoster poster{connection, record, layout, {}};

        void type(const std::string& what, const std::function<void(std::size_t)>& beforePost = {}) {
            const auto typing = poster.beginTyping();
            std::size_t at = 0;
            for (const auto& each : strokesOfText(map, what)) {
                if (beforePost) beforePost(at++);
                ASSERT_EQ(poster.post(each), PostVerdict::posted);
            }
            settle();
        }
        // The server does one client's requests in order, but promises no order between two.
        void settle() const {
            KeyboardState state;
            ASSERT_TRUE(readKeyboard(connection, state));
        }
    };

    Player& player = sharedPlayer();
};

TEST_F(NeutralKeyboardTest, TypesExactlyInEveryStateOfTheKeyboardAndGivesLocksAndGroupBack) {
    struct Row {
        const char* name;
        std::vector<std::uint8_t> held;
        std::uint8_t locked = 0;
        std::uint8_t latched = 0;
        std::uint8_t group = 0;
    };
    const Row rows[] = {
        {"nothing", {}},
        {"Shift held", {xkey::shiftLeft}},
        {"both Shifts held", {xkey::shiftLeft, xkey::shiftRight}},
        {"Control held", {xkey::controlLeft}},
        {"Alt held", {xkey::altLeft}},
        {"AltGr held", {xkey::altRight}},
        {"Super held", {xkey::superLeft}},
        {"a key of the text held", {25}},
        {"Caps Lock", {}, xmod::caps},
        {"Num Lock", {}, xmod::num},
        {"all locks", {}, xmod::caps | xmod::num | xmod::shift},
        {"Shift latched", {}, 0, xmod::shift},
        {"the other group", {}, 0, 0, 1},
        {"everything", {xkey::shiftLeft, xkey::controlRight, xkey::altRight}, xmod::caps | xmod::num, xmod::shift, 1},
    };
    Typist typist;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        player.letGo();
        player.lock(row.locked);
        player.lockGroup(row.group);
        for (const auto key : row.held) player.press(key, true);
        if (row.latched) player.latch(row.latched);
        ASSERT_EQ(player.state().latched, row.latched);
        (void)player.typedText();
        typist.type(text);
        EXPECT_EQ(player.typedText(), arriving);
        EXPECT_EQ(player.state(), (KeyboardState{0, 0, row.locked, row.group, row.group}));
        EXPECT_TRUE(player.keysDown().none());
        for (const auto key : row.held) player.press(key, false);
        EXPECT_EQ(player.state(), (KeyboardState{0, 0, row.locked, row.group, row.group}));
    }
}

TEST_F(NeutralKeyboardTest, TypesInTheGroupThatItLearnedAndLeavesThePlayersSwitched) {
    player.lockGroup(1);
    Typist typist;
    ASSERT_EQ(typist.layout.group(), 1U);
    typist.type("zßy@");
    EXPECT_EQ(player.typedText(), "zßy@");
    player.lockGroup(0);
    typist.type("zßy@");
    EXPECT_EQ(player.typedText(), "zßy@");
    EXPECT_EQ(player.state().lockedGroup, 0);
}

TEST_F(NeutralKeyboardTest, TypesInEveryGroupAndFollowsANewLayout) {
    setLayout("us,ru");
    player.lockGroup(1);
    Typist typist;
    ASSERT_EQ(typist.layout.group(), 1U);
    typist.type("Щит [&AgEAWgAA=] 5@ щ");
    EXPECT_EQ(player.typedText(), "Щит [&AgEAWgAA=] 5@ щ");
    EXPECT_EQ(player.state(), (KeyboardState{0, 0, 0, 1, 1}));
    player.lockGroup(0);
    EXPECT_FALSE(typist.layout.refresh()) << "a switch of the group is no other layout";
    setLayout("de");
    EXPECT_TRUE(typist.layout.refresh());
    typist.map = KeyMap::learn(typist.layout);
    typist.type("zß@");
    EXPECT_EQ(player.typedText(), "zß@");
}

TEST_F(NeutralKeyboardTest, WhatThePlayerDoesInMidTextSpoilsNothingAndCountsAfterwards) {
    using Act = std::function<void(Player&)>;
    const auto holding = [](std::uint8_t key) { return [key](Player& hand) { hand.press(key, true); }; };
    struct Row {
        const char* name;
        Act before;
        Act meanwhile;
        KeyboardState after;
    };
    const Act nothing = [](Player&) {};
    const Act capsOn = [](Player& hand) { hand.lock(xmod::caps); };
    const Act tapCaps = [](Player& hand) { hand.tap(xkey::capsLock); };
    // As a key does it: from the group that is in force, which may be Vantor's.
    const Act otherGroup = [](Player& hand) { hand.lockGroup(hand.state().lockedGroup ^ 1); };
    const Row rows[] = {
        {"Shift", nothing, holding(xkey::shiftLeft), {}},
        {"the other Shift", nothing, holding(xkey::shiftRight), {}},
        {"Control", nothing, holding(xkey::controlRight), {}},
        {"Super", nothing, holding(xkey::superLeft), {}},
        {"AltGr", capsOn, holding(xkey::altRight), {0, 0, xmod::caps, 0, 0}},
        {"Caps Lock goes on", nothing, tapCaps, {0, 0, xmod::caps, 0, 0}},
        {"Caps Lock goes off", capsOn, tapCaps, {}},
        {"Caps Lock held down", nothing, holding(xkey::capsLock), {0, 0, xmod::caps, 0, 0}},
        {"Num Lock", nothing, [](Player& hand) { hand.tap(xkey::numLock); }, {0, 0, xmod::num, 0, 0}},
        {"the group goes on", nothing, otherGroup, {0, 0, 0, 1, 1}},
        {"the group goes back", otherGroup, otherGroup, {}},
        {"Shift latched", nothing, [](Player& hand) { hand.latch(xmod::shift); }, {}},
    };
    Typist typist;
    const std::string typed = "aB%ß@z";  // the ß is the other group's
    const std::size_t posts = strokesOfText(typist.map, typed).size();
    ASSERT_EQ(posts, 18U);
    for (const Row& row : rows) {
        for (std::size_t at = 0; at < posts; ++at) {
            SCOPED_TRACE(std::string(row.name) + " before post " + std::to_string(at));
            player.letGo();
            row.before(player);
            typist.type(typed, [&](std::size_t post) {
                if (post != at) return;
                typist.settle();
                row.meanwhile(player);
                player.settle();  // by then the server has told everybody
            });
            EXPECT_EQ(player.typedText(), typed);
            // What comes after the last press is the player's own again.
            if (at < posts - 2) {
                EXPECT_TRUE(player.keysDown().none());
            }
            player.press(xkey::capsLock, false);
            for (const auto key :
                 {xkey::shiftLeft, xkey::shiftRight, xkey::controlRight, xkey::superLeft, xkey::altRight})
                player.press(key, false);
            EXPECT_EQ(player.state(), row.after);
        }
    }
}

// On this layout Shift and AltGr are latches of a further level while the other one is held.
TEST_F(NeutralKeyboardTest, ModifiersThatAreLatchesBesideOneAnotherSpoilNothing) {
    setLayout("de -variant T3");
    player.letGo();
    Typist typist;
    // The quarter note takes both, AltGr first.
    const std::string typed = "aB%µ♪z♪«";
    const auto strokes = strokesOfText(typist.map, typed);
    ASSERT_EQ(strokes.size(), 2U + 4 + 4 + 4 + 6 + 2 + 6 + 4);
    struct Row {
        const char* name;
        std::function<void(Player&)> meanwhile;
    };
    const Row rows[] = {
        {"AltGr", [](Player& hand) { hand.press(xkey::altRight, true); }},
        {"Shift", [](Player& hand) { hand.press(xkey::shiftRight, true); }},
        // Which takes Vantor's own off as well.
        {"AltGr, and Shift let go",
         [](Player& hand) {
             hand.press(xkey::altRight, true);
             hand.press(xkey::shiftLeft, false);
         }},
        {"Shift, and AltGr let go",
         [](Player& hand) {
             hand.press(xkey::shiftRight, true);
             hand.press(xkey::altRight, false);
         }},
        {"both, and off again",
         [](Player& hand) {
             hand.press(xkey::altRight, true);
             hand.tap(xkey::shiftRight);
             hand.press(xkey::altRight, false);
         }},
    };
    for (const Row& row : rows) {
        for (std::size_t at = 0; at < strokes.size(); ++at) {
            SCOPED_TRACE(std::string(row.name) + " before post " + std::to_string(at));
            player.letGo();
            typist.type(typed, [&](std::size_t post) {
                if (post != at) return;
                typist.settle();
                row.meanwhile(player);
                player.settle();
            });
            EXPECT_EQ(player.typedText(), typed);
            for (const auto key : {xkey::shiftLeft, xkey::shiftRight, xkey::altRight}) player.press(key, false);
            EXPECT_TRUE(player.keysDown().none());
            EXPECT_EQ(player.state(), KeyboardState());
        }
    }
}

TEST_F(NeutralKeyboardTest, TheMonitorsKnowThePlayersHandsAndNothingOfTheTyping) {
    Typist typist;
    RawKeyMonitors monitors(typist.connection, typist.record);
    std::vector<KeyEvent> heard;
    const auto listening = monitors.addGlobalMonitor(
        maskOf(KeyEventType::keyUp) | maskOf(KeyEventType::keyDown) | maskOf(KeyEventType::flagsChanged),
        [&](const KeyEvent& event) { heard.push_back(event); });
    typist.settle();
    player.press(xkey::superLeft, true);
    player.press(xkey::shiftLeft, true);
    typist.type("Vantor types\n");
    EXPECT_EQ(player.typedText(), "Vantor types\r");
    // Still held by the hand, whatever the server was told.
    player.tap(xkey::v);
    player.press(xkey::superLeft, false);
    player.press(xkey::shiftLeft, false);
    player.tap(xkey::a);
    QElapsedTimer timer;
    for (timer.start(); heard.size() < 8 && timer.elapsed() < 10000;)
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    constexpr auto flagsChanged = KeyEventType::flagsChanged;
    const auto both = modifier::command | modifier::shift;
    EXPECT_EQ(heard, (std::vector<KeyEvent>{{flagsChanged, 55, modifier::command, ""},
                                            {flagsChanged, 56, both, ""},
                                            {KeyEventType::keyDown, 9, both, "v"},
                                            {KeyEventType::keyUp, 9, both, "v"},
                                            {flagsChanged, 55, modifier::shift, ""},
                                            {flagsChanged, 56, 0, ""},
                                            {KeyEventType::keyDown, 0, 0, "a"},
                                            {KeyEventType::keyUp, 0, 0, "a"}}));
    EXPECT_TRUE(typist.record.empty());
}

}  // namespace
}  // namespace vantor
