// Real keymaps in the real keyboard library: what a key gives, and the state that a stream of keys makes.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/TrackedKeyboard.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

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
        {"us", "", 0, 0, shift, "A"},
        {"us", "", 0, 0, control, "\x01"},
        {"us", "", 0, 0, option, nullptr},  // right Alt chooses no level here: a shortcut
        {"us", "", 0, 0, capsLock | command, "a"},
        {"us", "", 0, 87, 0, "5"},  // as with Num Lock
        {"us", "", 0, 87, shift, nullptr},
        {"us", "", 0, 36, 0, "\r"},
        {"us", "", 0, 122, 0, nullptr},
        {"us", "", 0, 56, 0, nullptr},
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
        {"us,ru", ",", 0, 0, 0, "a"},
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
