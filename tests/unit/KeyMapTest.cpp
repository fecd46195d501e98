// What is learned from a layout: the rules on layouts written down here, and real layouts through the real keyboard
// library.

#include "input/KeyMap.h"

#include <gtest/gtest.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "fake/FakeKeyboardLayout.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

using namespace modifier;

constexpr ModifierFlags plain = nonCoalesced;
constexpr MappedKey shiftDown{56, 0};
constexpr MappedKey controlDown{59, 0};
constexpr MappedKey optionDown{61, 0};

using Entries = std::map<std::string, MappedKeys>;

TEST(KeyMap, TakesTheCheapestKeyAndOnATieTheEarlierProbe) {
    const auto all = shift | control | option;
    const struct {
        FakeKeyboardLayout::Keys keys;
        Entries learned;  // beside Return and Tab
    } rows[] = {
        {{}, {}},
        {{{{5, shift}, "x"}, {{3, control}, "x"}}, {{"x", {{3, control | plain}, controlDown}}}},
        {{{{5, option}, "x"}, {{5, shift}, "x"}}, {{"x", {{5, shift | plain}, shiftDown}}}},
        {{{{3, 0}, "a"}, {{3, shift | option}, "x"}, {{5, 0}, "b"}, {{5, option}, "x"}, {{9, 0}, "x"}},
         {{"a", {{3, plain}}}, {"b", {{5, plain}}}, {"x", {{9, plain}}}}},
        {{{{3, 0}, "a"}, {{3, all}, "x"}},
         {{"a", {{3, plain}}}, {"x", {{3, all | plain}, shiftDown, controlDown, optionDown}}}},
        // A key's first text is not taken again with modifiers, whatever came between.
        {{{{3, shift}, "a"}, {{3, control}, "b"}, {{3, option}, "a"}},
         {{"a", {{3, shift | plain}, shiftDown}}, {"b", {{3, control | plain}, controlDown}}}},
        // Of the equals sign the last probe wins.
        {{{{24, 0}, "="}, {{29, 0}, "0"}, {{29, shift}, "="}, {{29, shift | control}, "="}},
         {{"0", {{29, plain}}}, {"=", {{29, shift | control | plain}, shiftDown, controlDown}}}},
        {{{{24, 0}, "="}, {{81, 0}, "="}, {{24, shift}, "="}}, {{"=", {{24, plain}}}, {"= [NUM]", {{81, plain}}}}},
        // The keypad is kept apart.
        {{{{23, 0}, "5"}, {{87, 0}, "5"}, {{87, shift}, "6"}, {{95, 0}, ","}},
         {{",", {{95, plain}}},
          {"5", {{23, plain}}},
          {"5 [NUM]", {{87, plain}}},
          {"6 [NUM]", {{87, shift | plain}, shiftDown}}}},
        // Five keys and what is no virtual key are left out.
        {{{{72, 0}, "a"},
          {{73, 0}, "b"},
          {{74, 0}, "c"},
          {{114, 0}, "d"},
          {{115, 0}, "e"},
          {{116, 0}, "f"},
          {{127, 0}, "g"},
          {{128, 0}, "h"},
          {{48, 0}, "\t"},
          {{36, 0}, "\n"}},
         {{"f", {{116, plain}}}, {"g", {{127, plain}}}}},
    };
    for (const auto& row : rows) {
        FakeKeyboardLayout layout;
        layout.keys = row.keys;
        Entries expected = row.learned;
        expected.insert({{"\n", {{76, 0}}}, {"\t", {{48, 0}}}});
        EXPECT_EQ(KeyMap::learn(layout).entries(), expected);
    }
}

TEST(KeyMap, PrefersAsShortAKeyWithoutASlowModifierAndTakesFromOtherLayoutsWhatIsLacking) {
    FakeKeyboardLayout layout;
    layout.keys = {{{3, option}, "x"}, {{5, shift}, "x"},  {{6, option}, "x"},          {{7, shift}, "="},
                   {{8, option}, "="}, {{9, option}, "y"}, {{9, shift | control}, "y"}, {{2, 0}, "\u00e9"}};
    layout.slow = option;
    layout.otherKeys = {{{{3, 0}, "x"}, {{4, shift}, "z"}, {{5, 0}, "e\u0301"}}, {{{6, 0}, "z"}, {{7, 0}, "[["}}};
    const auto map = KeyMap::learn(layout);
    EXPECT_EQ(*map.find("x"), (MappedKeys{{5, shift | plain}, shiftDown}));
    EXPECT_EQ(*map.find("="), (MappedKeys{{7, shift | plain}, shiftDown}));
    EXPECT_EQ(*map.find("y"), (MappedKeys{{9, option | plain}, optionDown})) << "shorter";
    EXPECT_EQ(*map.find("z"), (MappedKeys{{4, shift | plain, 1}, {56, 0, 1}}));
    EXPECT_EQ(*map.find("[["), (MappedKeys{{7, plain, 2}}));
    EXPECT_EQ(map.find("e\u0301")->front().keyCode, 2) << "an equivalent text is not lacking";
    EXPECT_NE(keyMapJson(map).find("\"z\": [[4, 131328, 1], [56, 0, 1]]"), std::string::npos);
}

TEST(KeyMap, FindsTheExactTextFirstAndElseAnEquivalentOne) {
    FakeKeyboardLayout layout;
    layout.keys = {{{1, 0}, "\u00e9"}, {{2, 0}, "\u2126"}, {{3, 0}, "\u03a9"}, {{4, 0}, "n\u0303"}};
    const auto map = KeyMap::learn(layout);
    const auto codeOf = [&](const char* text) { return map.find(text) ? map.find(text)->front().keyCode : 999; };
    EXPECT_EQ(codeOf("\u00e9"), 1);
    EXPECT_EQ(codeOf("e\u0301"), 1);
    EXPECT_EQ(codeOf("\u2126"), 2);
    EXPECT_EQ(codeOf("\u03a9"), 3);
    EXPECT_EQ(codeOf("\u00f1"), 4);
    EXPECT_EQ(map.find("e"), nullptr);
    EXPECT_EQ(map.find(""), nullptr);
}

TEST(KeyMap, WritesItselfAsJsonInOneOrder) {
    FakeKeyboardLayout layout;
    layout.keys = {
        {{0, 0}, "\""}, {{1, shift}, "\\"}, {{2, 0}, "é"}, {{3, 0}, std::string(1, '\0')}, {{51, 0}, "\x7f"}};
    EXPECT_EQ(keyMapJson(KeyMap::learn(layout)),
              "{\"\\u0000\": [[3, 256]], \"\\u0009\": [[48, 0]], \"\\u000a\": [[76, 0]], \"\\\"\": [[0, 256]], "
              "\"\\\\\": [[1, 131328], [56, 0]], \"\\u007f\": [[51, 256]], \"é\": [[2, 256]]}");

    const auto real = KeyMap::learn(XkbKeyboardLayout("fr", ""));
    const auto read = QJsonDocument::fromJson(QByteArray::fromStdString(keyMapJson(real))).object();
    EXPECT_EQ(static_cast<std::size_t>(read.size()), real.entries().size());
}

}  // namespace
}  // namespace vantor
