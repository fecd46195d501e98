// What Vantor notes for its guardian, and what the keys of a layout do to the keyboard by being held.

#include <gtest/gtest.h>

#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/KeyEffects.h"
#include "platform/linux/keys/KeyboardDebt.h"

namespace vantor {
namespace {

TEST(KeyboardDebtTest, KeepsKeysAndLocksUntilItIsCleared) {
    KeyboardDebt debt;
    EXPECT_FALSE(debt.owesAnything());
    for (const int key : {8, 63, 64, 127, 128, 255}) {
        debt.note(static_cast<std::uint8_t>(key));
        EXPECT_TRUE(debt.mayBeDown(static_cast<std::uint8_t>(key)));
        EXPECT_FALSE(debt.mayBeDown(static_cast<std::uint8_t>(key - 1)) && key != 64 && key != 128);
    }
    EXPECT_TRUE(debt.owesKeys());
    debt.clear();
    EXPECT_FALSE(debt.owesAnything());
    // The first group is a group as well.
    for (const KeyboardDebt::Locks locks :
         {KeyboardDebt::Locks{0x12, std::nullopt}, KeyboardDebt::Locks{0xff, 3}, KeyboardDebt::Locks{0, 0}}) {
        debt.note(locks);
        EXPECT_EQ(debt.locks(), locks);
        EXPECT_TRUE(debt.owesAnything());
        EXPECT_FALSE(debt.owesKeys());
    }
    debt.note(KeyboardDebt::Locks{});
    EXPECT_FALSE(debt.owesAnything());
}

TEST(KeyEffectsTest, NamesTheKeysThatChooseAndTheModifiersOfThoseThatArePosted) {
    const auto keyOf = [](KeyCode code) { return *xKeycodeOf(code); };
    const KeyEffects german(namedKeymap("us,de", ",", "grp:menu_toggle"), 1);
    EXPECT_EQ(german.groups(), 2);
    // Caps Lock, Shift, Option, Control, right Shift, right Option, right Control, both Commands, Number Lock, and the
    // menu key, which switches the group here.
    for (const int code : {57, 56, 58, 59, 60, 61, 62, 54, 55, 71, 110})
        EXPECT_TRUE(german.choosers()[keyOf(static_cast<KeyCode>(code))]) << code;
    for (const int code : {0, 13, 36, 48, 49, 53, 76, 87, 122})
        EXPECT_FALSE(german.choosers()[keyOf(static_cast<KeyCode>(code))]) << code;
    EXPECT_TRUE(KeyEffects(nullptr, 0).choosers().none());
}

TEST(KeyEffectsTest, TellsTheStateOfHeldKeysInTheOrderOfTheirPresses) {
    const std::uint8_t shift = *xKeycodeOf(56), control = *xKeycodeOf(59), option = *xKeycodeOf(61), a = *xKeycodeOf(0);
    const KeyEffects german(namedKeymap("us,de", ","), 1);
    EXPECT_EQ(german.holding({}), (KeyEffects::State{0, 1}));
    EXPECT_EQ(german.holding({a}), (KeyEffects::State{0, 1}));
    EXPECT_EQ(german.holding({a, option, control, shift}), (KeyEffects::State{0x85, 1}));
    EXPECT_EQ(KeyEffects(namedKeymap("us,de", ","), 0).holding({option}), (KeyEffects::State{8, 0})) << "Alt there";
    // Beside right Option, Shift is a latch of the fifth level, and beside Shift so is right Option.
    const KeyEffects latching(namedKeymap("de", "T3"), 0);
    EXPECT_EQ(latching.holding({option, shift}), (KeyEffects::State{0xa0, 0}));
    EXPECT_EQ(latching.holding({shift, option}), (KeyEffects::State{0x21, 0}));
    EXPECT_EQ(KeyEffects(nullptr, 0).holding({shift}), KeyEffects::State{});

    EXPECT_TRUE(latching.differsBeside({option}, shift));
    EXPECT_TRUE(latching.differsBeside({shift}, option));
    EXPECT_FALSE(latching.differsBeside({control}, shift));
    EXPECT_FALSE(german.differsBeside({option, control}, shift));
    // The same modifier, but latched.
    const std::uint8_t angle = 94;
    EXPECT_TRUE(KeyEffects(namedKeymap("fr", "", "lv3:lsgt_switch_latch"), 0).differsBeside({option}, angle));
    EXPECT_FALSE(KeyEffects(nullptr, 0).differsBeside({option}, shift));
}

}  // namespace
}  // namespace vantor
