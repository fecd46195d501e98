// What is typed arrives exactly on a real X server, whatever the player holds, latches, locks or does meanwhile, and
// the keyboard is the player's again afterwards.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ComesTrue.h"
#include "Player.h"
#include "Typist.h"
#include "platform/linux/keys/RawKeyMonitors.h"

namespace vantor {
namespace {

using Act = std::function<void(Player&)>;

Act holding(std::vector<std::uint8_t> keys) {
    return [keys](Player& hand) {
        for (const auto key : keys) hand.press(key, true);
    };
}
Act locking(std::uint8_t modifiers) {
    return [modifiers](Player& hand) { hand.lock(modifiers); };
}

class NeutralKeyboardTest : public testing::Test {
protected:
    void SetUp() override { start("us,de"); }
    void TearDown() override {
        player.letGo();
        EXPECT_EQ(std::system("setxkbmap -layout us"), 0);
    }
    // Vantor as it is when started with these layouts and this one of them in force.
    void start(const char* layouts, std::uint8_t group = 0) {
        player.letGo();
        ASSERT_EQ(std::system((std::string("setxkbmap -layout ") + layouts).c_str()), 0);
        player.takeFocus();
        player.lockGroup(group);
        (void)player.typed();
        typist.emplace();
        ASSERT_EQ(typist->layout.group(), group);
    }
    std::string typed(const std::string& text) {
        typist->type(text);
        return player.typedText();
    }
    // Types it as often as it has strokes, with a hand that acts before another one each time.
    void typeWithHand(const char* name, const std::string& text, const Act& before, const Act& meanwhile,
                      const KeyboardState& after) {
        const std::size_t posts = strokesOfText(typist->map, text).size();
        for (std::size_t at = 0; at < posts; ++at) {
            SCOPED_TRACE(std::string(name) + " before post " + std::to_string(at));
            player.letGo();
            before(player);
            (void)player.typed();
            typist->type(text, [&](std::size_t post) {
                if (post != at) return;
                typist->settle();
                meanwhile(player);
                player.settle();  // by then the server has told everybody
            });
            EXPECT_EQ(player.typedText(), text);
            // What comes after the last press is the player's own again.
            EXPECT_TRUE(at >= posts - 2 || player.keysDown().none());
            for (const auto key : hands) player.press(key, false);
            EXPECT_TRUE(player.keysDown().none());
            EXPECT_EQ(player.state(), after);
        }
    }

    static constexpr std::uint8_t hands[] = {xkey::capsLock,  xkey::shiftLeft, xkey::shiftRight, xkey::controlRight,
                                             xkey::superLeft, xkey::altRight,  xkey::altLeft,    xkey::a};
    Player& player = sharedPlayer();
    std::optional<Typist> typist;
};

TEST_F(NeutralKeyboardTest, TypesInEveryGroupLeavesThePlayersSwitchedAndFollowsANewLayout) {
    start("us,ru", 1);
    EXPECT_EQ(typed("Щит [&AgEAWgAA=] 5@ щ"), "Щит [&AgEAWgAA=] 5@ щ");
    EXPECT_EQ(player.state(), (KeyboardState{0, 0, 0, 1, 1}));
    player.lockGroup(0);
    EXPECT_EQ(typed("щ5@"), "щ5@");
    EXPECT_EQ(player.state(), KeyboardState());
    EXPECT_FALSE(typist->layout.refresh()) << "a switch of the group is no other layout";
    // A key that was no modifier when the layout was learned.
    ASSERT_EQ(std::system("setxkbmap -layout us,ru -option altwin:menu_win"), 0);
    player.press(xkey::menu, true);
    EXPECT_EQ(typed("aB"), "aB");
    player.press(xkey::menu, false);
    ASSERT_EQ(std::system("setxkbmap -layout de -option"), 0);
    EXPECT_TRUE(typist->layout.refresh());
    typist->map = KeyMap::learn(typist->layout);
    EXPECT_EQ(typed("zß@€{"), "zß@€{");
}

TEST_F(NeutralKeyboardTest, WhatThePlayerHoldsOrDoesInMidTextSpoilsNothingAndCountsAfterwards) {
    struct Row {
        const char* name;
        Act before;
        Act meanwhile;
        KeyboardState after;
    };
    const Act nothing = [](Player&) {};
    const Act capsOn = locking(xmod::caps);
    const Act tapCaps = [](Player& hand) { hand.tap(xkey::capsLock); };
    // As a key does it: from the group that is in force, which may be Vantor's.
    const Act otherGroup = [](Player& hand) { hand.lockGroup(hand.state().lockedGroup ^ 1); };
    const Act latchShift = [](Player& hand) { hand.latch(xmod::shift); };
    const Act everything = [](Player& hand) {
        hand.lock(xmod::caps | xmod::num);
        hand.lockGroup(1);
        holding({xkey::shiftLeft, xkey::controlRight, xkey::altRight})(hand);
        hand.latch(xmod::shift);
    };
    const Row rows[] = {
        {"both Shifts held", holding({xkey::shiftLeft, xkey::shiftRight}), nothing, {}},
        {"Control held", holding({xkey::controlRight}), nothing, {}},
        {"Alt held", holding({xkey::altLeft}), nothing, {}},
        {"AltGr held", holding({xkey::altRight}), nothing, {}},
        {"Super held", holding({xkey::superLeft}), nothing, {}},
        {"a key of the text held", holding({xkey::a}), nothing, {}},
        {"all locks",
         locking(xmod::caps | xmod::num | xmod::shift),
         nothing,
         {0, 0, xmod::caps | xmod::num | xmod::shift, 0, 0}},
        {"Shift latched before", latchShift, nothing, {}},
        {"everything", everything, nothing, {0, 0, xmod::caps | xmod::num, 1, 1}},
        {"Shift", nothing, holding({xkey::shiftLeft}), {}},
        {"the other Shift", nothing, holding({xkey::shiftRight}), {}},
        {"Control", nothing, holding({xkey::controlRight}), {}},
        {"Super", nothing, holding({xkey::superLeft}), {}},
        {"AltGr", capsOn, holding({xkey::altRight}), {0, 0, xmod::caps, 0, 0}},
        {"Caps Lock goes on", nothing, tapCaps, {0, 0, xmod::caps, 0, 0}},
        {"Caps Lock goes off", capsOn, tapCaps, {}},
        {"Caps Lock held down", nothing, holding({xkey::capsLock}), {0, 0, xmod::caps, 0, 0}},
        {"Num Lock", nothing, [](Player& hand) { hand.tap(xkey::numLock); }, {0, 0, xmod::num, 0, 0}},
        {"the group goes on", nothing, otherGroup, {0, 0, 0, 1, 1}},
        {"the group goes back", otherGroup, otherGroup, {}},
        {"Shift latched", nothing, latchShift, {}},
    };
    // The ß is the other group's.
    for (const Row& row : rows) typeWithHand(row.name, "aB%ß@z", row.before, row.meanwhile, row.after);
}

// On this layout Shift and AltGr are latches of a further level while the other one is held.
TEST_F(NeutralKeyboardTest, ModifiersThatAreLatchesBesideOneAnotherSpoilNothing) {
    start("de -variant T3");
    const auto pressing = [](std::uint8_t held, std::uint8_t letGo) {
        return [held, letGo](Player& hand) {
            hand.press(held, true);
            hand.press(letGo, false);
        };
    };
    const struct {
        const char* name;
        Act meanwhile;
    } rows[] = {
        {"AltGr", holding({xkey::altRight})},
        {"Shift", holding({xkey::shiftRight})},
        // Which takes Vantor's own off as well.
        {"AltGr, and Shift let go", pressing(xkey::altRight, xkey::shiftLeft)},
        {"Shift, and AltGr let go", pressing(xkey::shiftRight, xkey::altRight)},
        {"both, and off again",
         [](Player& hand) {
             hand.press(xkey::altRight, true);
             hand.tap(xkey::shiftRight);
             hand.press(xkey::altRight, false);
         }},
    };
    // The quarter note takes both, AltGr first.
    for (const auto& row : rows) typeWithHand(row.name, "aB%µ♪z♪«", [](Player&) {}, row.meanwhile, {});
}

TEST_F(NeutralKeyboardTest, TheMonitorsKnowThePlayersHandsAndNothingOfTheTyping) {
    RawKeyMonitors monitors(typist->connection, typist->record);
    std::vector<KeyEvent> heard;
    const auto listening = monitors.addGlobalMonitor(
        maskOf(KeyEventType::keyUp) | maskOf(KeyEventType::keyDown) | maskOf(KeyEventType::flagsChanged),
        [&](const KeyEvent& event) { heard.push_back(event); });
    typist->settle();
    player.press(xkey::superLeft, true);
    player.press(xkey::shiftLeft, true);
    EXPECT_EQ(typed("Vantor types\n"), "Vantor types\r");
    // Still held by the hand, whatever the server was told.
    player.tap(xkey::v);
    player.press(xkey::superLeft, false);
    player.press(xkey::shiftLeft, false);
    player.tap(xkey::a);
    EXPECT_TRUE(comesTrue([&] { return heard.size() >= 8; }));
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
    EXPECT_TRUE(typist->record.empty());
}

}  // namespace
}  // namespace vantor
