// The table between virtual key codes and the kernel's, in both directions.

#include "platform/linux/keys/KeyCodes.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <set>
#include <vector>

#include "platform/KeyClasses.h"

namespace vantor {
namespace {

TEST(KeyCodes, AccountForAll128InBothDirections) {
    std::vector<KeyCode> without;
    std::set<EvdevCode> used;
    for (KeyCode code = 0; code < keyCodeCount; ++code) {
        const auto evdev = evdevCodeOf(code);
        if (!evdev) {
            without.push_back(code);
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
    EXPECT_EQ(without, (std::vector<KeyCode>{52, 66, 68, 70, 77, 108, 112, 127}));
    EXPECT_EQ(evdevCodeOf(63), KEY_FN);
    EXPECT_EQ(xKeycodeOf(63), std::nullopt) << "beyond what X can number";
    EXPECT_EQ(evdevCodeOf(keyCodeCount), std::nullopt);
}

TEST(KeyCodes, MeetTheKeysThatPlayersUse) {
    const std::pair<KeyCode, EvdevCode> rows[] = {
        {0, KEY_A},           {10, KEY_102ND},     {16, KEY_Y},         {22, KEY_6},         {23, KEY_5},
        {24, KEY_EQUAL},      {27, KEY_MINUS},     {36, KEY_ENTER},     {42, KEY_BACKSLASH}, {48, KEY_TAB},
        {49, KEY_SPACE},      {50, KEY_GRAVE},     {51, KEY_BACKSPACE}, {53, KEY_ESC},       {54, KEY_RIGHTMETA},
        {55, KEY_LEFTMETA},   {56, KEY_LEFTSHIFT}, {57, KEY_CAPSLOCK},  {58, KEY_LEFTALT},   {59, KEY_LEFTCTRL},
        {60, KEY_RIGHTSHIFT}, {61, KEY_RIGHTALT},  {62, KEY_RIGHTCTRL}, {71, KEY_NUMLOCK},   {76, KEY_KPENTER},
        {87, KEY_KP5},        {89, KEY_KP7},       {91, KEY_KP8},       {114, KEY_INSERT},   {115, KEY_HOME},
        {116, KEY_PAGEUP},    {117, KEY_DELETE},   {119, KEY_END},      {121, KEY_PAGEDOWN}, {122, KEY_F1},
        {99, KEY_F3},         {118, KEY_F4},       {111, KEY_F12},      {123, KEY_LEFT},     {126, KEY_UP},
    };
    for (const auto& [code, evdev] : rows) EXPECT_EQ(evdevCodeOf(code), evdev) << code;
    for (const unsigned unknown : {0U, 7U, 8U + KEY_PAUSE, 8U + KEY_SYSRQ, 256U, 1000U})
        EXPECT_EQ(keyCodeOfX(unknown), std::nullopt) << unknown;
}

TEST(KeyClasses, TellKeypadModifierAndFunctionKeysApart) {
    std::vector<KeyCode> keypad;
    std::vector<KeyCode> modifiers;
    for (KeyCode code = 0; code < keyCodeCount; ++code) {
        if (isKeypadKey(code)) keypad.push_back(code);
        if (isModifierKey(code)) modifiers.push_back(code);
        EXPECT_LE(isKeypadKey(code) + isModifierKey(code) + carriesFunctionFlag(code), 1) << code;
    }
    EXPECT_EQ(keypad, (std::vector<KeyCode>{65, 67, 69, 71, 75, 76, 78, 81, 82, 83, 84, 85, 86, 87, 88, 89, 91, 92}));
    EXPECT_EQ(modifiers, (std::vector<KeyCode>{54, 55, 56, 57, 58, 59, 60, 61, 62, 63}));
    for (const int code : {122, 80, 123, 126, 117, 119}) EXPECT_TRUE(carriesFunctionFlag(static_cast<KeyCode>(code)));
    for (const int code : {0, 36, 53, 110}) EXPECT_FALSE(carriesFunctionFlag(static_cast<KeyCode>(code)));
}

}  // namespace
}  // namespace vantor
