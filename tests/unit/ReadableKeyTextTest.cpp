// The readable text of a key event, which is the stored form of every hotkey.

#include "input/ReadableKeyText.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "input/KeyNames.h"

namespace vantor {
namespace {

using namespace modifier;

KeyEvent key(KeyCode code, ModifierFlags flags, std::string characters = {}) {
    return {KeyEventType::keyDown, code, flags, std::move(characters)};
}

TEST(ReadableKeyText, JoinsTheModifiersInTheStoredOrderAndNamesTheKey) {
    const struct {
        KeyEvent event;
        std::string text;
    } rows[] = {
        {key(4, command | shift, "h"), "⌘ + ⇧ + H"},
        {key(96, control | function), "⌃ + F5"},
        {key(122, function), "F1"},
        {key(124, shift | function), "⇧ + →"},
        {key(4, function, "h"), "fn + H"},
        {key(87, numericPad, "5"), "numpad 5"},
        {key(71, numericPad, ""), "numpad 🅇"},
        {key(36, 0, "\r"), "↩︎"},
        {key(76, numericPad, "\r"), "numpad ↩︎"},
        {key(49, 0, " "), "␣"},
        {key(51, option, "\b"), "⌥ + ⌫"},
        {key(53, capsLock, "\x1b"), "⇪ + ESC"},
        {key(9, nonCoalesced | command, "v"), "⌘ + V"},
        {key(0, command | control | function | capsLock | option | shift | numericPad, "a"),
         "⌘ + ⌃ + fn + ⇪ + ⌥ + ⇧ + numpad A"},
        {key(27, 0, "ß"), "SS"},
        {key(33, 0, "ü"), "Ü"},
        {key(0, 0, "ф"), "Ф"},
        {key(33, shift), "⇧ + "},  // a dead key has no characters
        {key(56, 0, "x"), "X"},    // the names of modifier keys are for playing back only
        {key(200, 0, "x"), "X"},
    };
    for (const auto& row : rows) EXPECT_EQ(readableKeyText(row.event), row.text);
    for (const auto& row : rows) EXPECT_NE(readableKeyText(row.event), " ") << "an unset hotkey would fire";
}

TEST(KeyNames, AreUniqueSoThatAStoredHotkeyPlaysBackAsItsKey) {
    std::set<std::string_view> names;
    std::set<KeyCode> codes;
    for (const auto& [name, code] : readableKeyNames) {
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_TRUE(codes.insert(code).second) << code;
        EXPECT_EQ(keyCodeNamed(name), code);
    }
    EXPECT_EQ(names.size(), 36U);
    EXPECT_EQ(keyCodeNamed("F19"), 80);
    EXPECT_EQ(functionKeyName(71), "🅇");
    EXPECT_EQ(functionKeyName(76), std::nullopt);
    EXPECT_EQ(keyCodeNamed("↩︎"), 76);
    EXPECT_EQ(keyCodeNamed("\u21A9"), std::nullopt) << "the name carries the text-presentation selector";
    for (const auto* absent : {"⌘", "⇪", "fn", "", "f1", "numpad 5"}) EXPECT_EQ(keyCodeNamed(absent), std::nullopt);
}

}  // namespace
}  // namespace vantor
