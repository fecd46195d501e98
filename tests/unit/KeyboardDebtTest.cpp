// What Vantor notes for its guardian, and what the keys of a layout do to the keyboard by being held.

#include <gtest/gtest.h>

#include "platform/linux/KeyCodes.h"
#include "platform/linux/KeyEffects.h"
#include "platform/linux/KeyboardDebt.h"

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
    const auto german = keyEffects(namedKeymap("us,de", ",", "grp:menu_toggle"), 1);
    EXPECT_EQ(german.groups, 2);
    // Caps Lock, Shift, Option, Control, right Shift, right Option, right Control, both Commands, Number Lock, and the
    // menu key, which switches the group here.
    for (const int code : {57, 56, 58, 59, 60, 61, 62, 54, 55, 71, 110})
        EXPECT_TRUE(german.choosers[keyOf(static_cast<KeyCode>(code))]) << code;
    for (const int code : {0, 13, 36, 48, 49, 53, 76, 87, 122})
        EXPECT_FALSE(german.choosers[keyOf(static_cast<KeyCode>(code))]) << code;
    EXPECT_EQ(german.modifiers[keyOf(56)], 1);
    EXPECT_EQ(german.modifiers[keyOf(59)], 4);
    EXPECT_EQ(german.modifiers[keyOf(61)], 0x80);
    EXPECT_EQ(german.modifiers[keyOf(0)], 0);
    EXPECT_EQ(keyEffects(namedKeymap("us,de", ","), 0).modifiers[keyOf(61)], 8) << "Alt in the first group";
    EXPECT_TRUE(keyEffects(nullptr, 0).choosers.none());
}

}  // namespace
}  // namespace vantor
