// Key codes and real keymaps in the real keyboard library: what a key gives, the state that a stream of keys makes,
// what held keys do, and what Vantor notes of all that for its guardian.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <set>

#include "platform/KeyClasses.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/KeyEffects.h"
#include "platform/linux/keys/PendingKeyboardCleanup.h"
#include "platform/linux/keys/TrackedKeyboard.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

TEST(KeyCodes, AccountForAll128InBothDirections) {
    std::set<KeyCode> without;
    std::set<EvdevCode> used;
    for (KeyCode code = 0; code < keyCodeCount; ++code) {
        const auto evdev = evdevCodeOf(code);
        if (!evdev) {
            without.insert(code);
            EXPECT_EQ(xKeycodeOf(code), std::nullopt);
            continue;
        }
        EXPECT_TRUE(used.insert(*evdev).second) << "two virtual key codes share key " << *evdev;
        EXPECT_EQ(keyCodeOf(*evdev), code);
        if (const auto x = xKeycodeOf(code)) {
            EXPECT_EQ(*x, *evdev + 8);
            EXPECT_EQ(keyCodeOfX(*x), code);
        }
    }
    EXPECT_EQ(without, (std::set<KeyCode>{52, 66, 68, 70, 77, 108, 112, 127}));
    EXPECT_EQ(evdevCodeOf(63), KEY_FN);
    EXPECT_EQ(xKeycodeOf(63), std::nullopt) << "beyond what X can number";
    EXPECT_EQ(evdevCodeOf(keyCodeCount), std::nullopt);
    for (const unsigned unknown : {0U, 7U, 8U + KEY_PAUSE, 8U + KEY_SYSRQ, 256U, 1000U})
        EXPECT_EQ(keyCodeOfX(unknown), std::nullopt) << unknown;
    // A place apart from its neighbours each, so that a shifted table is seen.
    const std::pair<KeyCode, EvdevCode> rows[] = {{0, KEY_A},        {10, KEY_102ND}, {53, KEY_ESC}, {61, KEY_RIGHTALT},
                                                  {76, KEY_KPENTER}, {115, KEY_HOME}, {122, KEY_F1}, {126, KEY_UP}};
    for (const auto& [code, evdev] : rows) EXPECT_EQ(evdevCodeOf(code), evdev) << code;
}

TEST(PendingKeyboardCleanupTest, KeepsKeysAndLocksUntilItIsCleared) {
    using Locks = PendingKeyboardCleanup::Locks;
    PendingKeyboardCleanup pending;
    for (const std::uint8_t key : std::initializer_list<std::uint8_t>{8, 63, 65, 127, 129, 255}) {
        pending.note(key);
        EXPECT_TRUE(pending.mayBeDown(key));
        EXPECT_FALSE(pending.mayBeDown(static_cast<std::uint8_t>(key - 1)));
    }
    EXPECT_TRUE(pending.hasKeys());
    pending.clear();
    EXPECT_FALSE(pending.hasAny());
    // The first group is a group as well.
    for (const Locks locks : {Locks{0x12, std::nullopt}, Locks{0xff, 3}, Locks{0, 0}, Locks{}}) {
        pending.note(locks);
        EXPECT_EQ(pending.locks(), locks);
        EXPECT_EQ(pending.hasAny(), locks != Locks{});
        EXPECT_FALSE(pending.hasKeys());
    }
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

using namespace modifier;

TEST(XkbKeyboardLayout, GivesWhatPostingWouldGive) {
    const struct {
        const char* layout;
        const char* variant;
        xkb_layout_index_t group;
        KeyCode code;
        ModifierFlags flags;
        const char* characters;  // null: nothing
    } rows[] = {
        {"us", "", 0, 0, nonCoalesced, "a"},
        {"us", "", 0, 0, control, "\x01"},
        {"us", "", 0, 0, option, nullptr},  // right Alt chooses no level here: a shortcut
        {"us", "", 0, 0, capsLock | command, "a"},
        {"us", "", 0, 87, 0, "5"},  // as with Num Lock
        {"us", "", 0, 87, shift, nullptr},
        {"us", "", 0, 52, 0, nullptr},
        {"us", "", 0, 200, 0, nullptr},
        {"us", "intl", 0, 39, 0, nullptr},  // dead
        {"us", "intl", 0, 39, option, "'"},
        {"de", "", 0, 12, option, "@"},
        {"de", "", 0, 50, 0, nullptr},  // dead
        {"de", "nodeadkeys", 0, 50, 0, "^"},
        {"de", "", 0, 29, shift, "="},
        {"de", "", 0, 29, shift | control, nullptr},    // no text but a shortcut
        {"de", "T3", 0, 12, shift | option, "\u030d"},  // Shift is another key while AltGr is down
        {"de", "", 0, 19, shift | option, "\u215b"},
        {"us,ru", ",", 1, 0, 0, "ф"},
        {"us,ru", ",", 1, 0, control, "\x01"},  // the group without Latin letters falls back
        {"no such layout", "", 0, 0, 0, nullptr},
    };
    for (const auto& row : rows) {
        const XkbKeyboardLayout layout(row.layout, row.variant, row.group);
        const auto translation = layout.translate(row.code, row.flags);
        ASSERT_EQ(translation.has_value(), row.characters != nullptr) << row.layout << row.variant << row.code;
        if (!translation) continue;
        EXPECT_EQ(translation->characters, row.characters) << row.layout << row.variant << row.code;
        EXPECT_EQ(translation->flags, row.flags);
    }
    // Here the Control key is Caps Lock, which a press would leave on.
    const XkbKeyboardLayout swapped(namedKeymap("de", "", "ctrl:swapcaps"), 0);
    EXPECT_FALSE(swapped.translate(29, shift | control));
    EXPECT_TRUE(swapped.translate(29, shift));
}

class Keyboard {
public:
    explicit Keyboard(const char* layout, const char* options = "")
        : tracked_(namedKeymap(layout, "", options), {}, {}) {}

    KeyEvent key(KeyCode code, bool down) {
        const auto x = *xKeycodeOf(code);
        tracked_.update(x, down);
        return tracked_.eventFor(x, down).value();
    }
    TrackedKeyboard& tracked() { return tracked_; }

private:
    TrackedKeyboard tracked_;
};

constexpr auto keyDown = KeyEventType::keyDown;
constexpr auto keyUp = KeyEventType::keyUp;
constexpr auto flagsChanged = KeyEventType::flagsChanged;

TEST(TrackedKeyboard, CarriesTheFlagsOfWhatTheStreamHolds) {
    Keyboard keyboard("de");
    EXPECT_EQ(keyboard.key(56, true), (KeyEvent{flagsChanged, 56, shift, ""}));
    EXPECT_EQ(keyboard.key(60, true), (KeyEvent{flagsChanged, 60, shift, ""}));
    EXPECT_EQ(keyboard.key(56, false), (KeyEvent{flagsChanged, 56, shift, ""})) << "the other Shift is still held";
    EXPECT_EQ(keyboard.key(6, true), (KeyEvent{keyDown, 6, shift, "y"})) << "characters as without modifiers";
    EXPECT_EQ(keyboard.key(60, false), (KeyEvent{flagsChanged, 60, 0, ""}));
    EXPECT_EQ(keyboard.key(6, false), (KeyEvent{keyUp, 6, 0, "y"}));
    for (const auto& [code, flag] :
         {std::pair{54, command}, {55, command}, {58, option}, {61, option}, {59, control}, {62, control}}) {
        const auto key = static_cast<KeyCode>(code);
        EXPECT_EQ(keyboard.key(key, true), (KeyEvent{flagsChanged, key, flag, ""}));
        EXPECT_EQ(keyboard.key(key, true).flags, flag) << "a repeat is no second press";
        EXPECT_EQ(keyboard.key(key, false), (KeyEvent{flagsChanged, key, 0, ""}));
    }
    EXPECT_EQ(keyboard.key(122, true), (KeyEvent{keyDown, 122, function, ""}));
    EXPECT_EQ(keyboard.key(124, true), (KeyEvent{keyDown, 124, function, ""}));
    EXPECT_EQ(keyboard.key(87, true), (KeyEvent{keyDown, 87, numericPad, "5"}));
    EXPECT_EQ(keyboard.key(71, true), (KeyEvent{keyDown, 71, numericPad, ""})) << "Num Lock is the Clear key";
    EXPECT_EQ(keyboard.tracked().eventFor(8 + 119, true), std::nullopt) << "Pause has no virtual key code";
}

TEST(TrackedKeyboard, TakesLocksAndGroupFromTheServerAndKeepsWhatTheStreamHolds) {
    Keyboard keyboard("us,ru");
    EXPECT_EQ(keyboard.key(57, true).flags, capsLock);
    EXPECT_EQ(keyboard.key(57, false).flags, capsLock);
    EXPECT_EQ(keyboard.key(0, true), (KeyEvent{keyDown, 0, capsLock, "a"}));
    EXPECT_EQ(keyboard.key(0, false).type, keyUp);
    keyboard.key(59, true);
    keyboard.tracked().resynchronise({0, 0, 0, 1});
    EXPECT_EQ(keyboard.key(0, true), (KeyEvent{keyDown, 0, control, "ф"}));
    keyboard.key(0, false);
    EXPECT_EQ(keyboard.key(59, false).flags, 0U);
    // Held since before the stream began: the server tells, and tells the end.
    keyboard.tracked().resynchronise({1 << 6, 0, 0, 0});
    EXPECT_EQ(keyboard.key(0, true), (KeyEvent{keyDown, 0, command, "a"}));
    keyboard.key(0, false);
    keyboard.tracked().resynchronise({});
    EXPECT_EQ(keyboard.tracked().flags(), 0U);

    TrackedKeyboard::HeldKeys held;
    held[*xKeycodeOf(56)] = true;
    TrackedKeyboard begun(namedKeymap("us"), held, {1, 0, 2, 0});
    EXPECT_EQ(begun.flags(), shift | capsLock);
    begun.update(*xKeycodeOf(56), false);
    EXPECT_EQ(begun.flags(), capsLock);
}

TEST(TrackedKeyboard, FollowsModifiersThatThePlayerPutElsewhere) {
    Keyboard keyboard("us", "ctrl:nocaps");
    EXPECT_EQ(keyboard.key(57, true), (KeyEvent{flagsChanged, 57, control, ""}));
    EXPECT_EQ(keyboard.key(0, true), (KeyEvent{keyDown, 0, control, "a"}));
    Keyboard swapped("us", "altwin:swap_alt_win");
    EXPECT_EQ(swapped.key(58, true).flags, command);
    TrackedKeyboard none;
    EXPECT_EQ(none.eventFor(8 + 30, true), (KeyEvent{keyDown, 0, 0, ""}));
}

}  // namespace
}  // namespace vantor
