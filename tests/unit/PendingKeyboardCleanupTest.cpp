// What Vantor notes for its guardian, and what the keys of a layout do to the keyboard by being held.

#include <gtest/gtest.h>

#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/KeyEffects.h"
#include "platform/linux/keys/PendingKeyboardCleanup.h"

namespace vantor {
namespace {

TEST(PendingKeyboardCleanupTest, KeepsKeysAndLocksUntilItIsCleared) {
    PendingKeyboardCleanup pending;
    EXPECT_FALSE(pending.hasAny());
    for (const int key : {8, 63, 64, 127, 128, 255}) {
        pending.note(static_cast<std::uint8_t>(key));
        EXPECT_TRUE(pending.mayBeDown(static_cast<std::uint8_t>(key)));
        EXPECT_FALSE(pending.mayBeDown(static_cast<std::uint8_t>(key - 1)) && key != 64 && key != 128);
    }
    EXPECT_TRUE(pending.hasKeys());
    pending.clear();
    EXPECT_FALSE(pending.hasAny());
    // The first group is a group as well.
    for (const PendingKeyboardCleanup::Locks locks :
         {PendingKeyboardCleanup::Locks{0x12, std::nullopt}, PendingKeyboardCleanup::Locks{0xff, 3},
          PendingKeyboardCleanup::Locks{0, 0}}) {
        pending.note(locks);
        EXPECT_EQ(pending.locks(), locks);
        EXPECT_TRUE(pending.hasAny());
        EXPECT_FALSE(pending.hasKeys());
    }
    pending.note(PendingKeyboardCleanup::Locks{});
    EXPECT_FALSE(pending.hasAny());
}

TEST(KeyEffectsTest, NamesTheKeysThatChooseAndTheModifiersOfThoseThatArePosted) {
    const auto keyOf = [](KeyCode code) { return *xKeycodeOf(code); };
    const KeyEffects german(namedKeymap("us,de", ",", "grp:menu_toggle"));
    EXPECT_EQ(german.groups(), 2);
    // Caps Lock, Shift, Option, Control, right Shift, right Option, right Control, both Commands, Number Lock, and the
    // menu key, which switches the group here.
    for (const int code : {57, 56, 58, 59, 60, 61, 62, 54, 55, 71, 110})
        EXPECT_TRUE(german.modifierKeys()[keyOf(static_cast<KeyCode>(code))]) << code;
    for (const int code : {0, 13, 36, 48, 49, 53, 76, 87, 122})
        EXPECT_FALSE(german.modifierKeys()[keyOf(static_cast<KeyCode>(code))]) << code;
    EXPECT_TRUE(KeyEffects(nullptr).modifierKeys().none());
}

TEST(KeyEffectsTest, TellsTheStateOfHeldKeysInTheOrderOfTheirPresses) {
    const std::uint8_t shift = *xKeycodeOf(56), control = *xKeycodeOf(59), option = *xKeycodeOf(61), a = *xKeycodeOf(0);
    const KeyEffects german(namedKeymap("us,de", ","));
    EXPECT_EQ(german.holding({}, 1), (KeyEffects::State{0, 1}));
    EXPECT_EQ(german.holding({a}, 1), (KeyEffects::State{0, 1}));
    EXPECT_EQ(german.holding({a, option, control, shift}, 1), (KeyEffects::State{0x85, 1}));
    EXPECT_EQ(german.holding({option}, 0), (KeyEffects::State{8, 0})) << "Alt there";
    // Beside right Option, Shift is a latch of the fifth level, and beside Shift so is right Option.
    const KeyEffects latching(namedKeymap("de", "T3"));
    EXPECT_EQ(latching.holding({option, shift}, 0), (KeyEffects::State{0xa0, 0}));
    EXPECT_EQ(latching.holding({shift, option}, 0), (KeyEffects::State{0x21, 0}));
    EXPECT_EQ(KeyEffects(nullptr).holding({shift}, 0), KeyEffects::State{});

    EXPECT_TRUE(latching.differsBeside({option}, shift, 0));
    EXPECT_TRUE(latching.differsBeside({shift}, option, 0));
    EXPECT_FALSE(latching.differsBeside({control}, shift, 0));
    EXPECT_FALSE(german.differsBeside({option, control}, shift, 1));
    // The same modifier, but latched.
    const std::uint8_t angle = 94;
    EXPECT_TRUE(KeyEffects(namedKeymap("fr", "", "lv3:lsgt_switch_latch")).differsBeside({option}, angle, 0));
    EXPECT_FALSE(KeyEffects(nullptr).differsBeside({option}, shift, 0));
}

}  // namespace
}  // namespace vantor
