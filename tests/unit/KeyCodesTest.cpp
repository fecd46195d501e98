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
    // A place apart from its neighbours each, so that a shifted table is seen.
    const std::pair<KeyCode, EvdevCode> rows[] = {
        {0, KEY_A},        {10, KEY_102ND}, {36, KEY_ENTER}, {53, KEY_ESC}, {61, KEY_RIGHTALT},
        {76, KEY_KPENTER}, {87, KEY_KP5},   {115, KEY_HOME}, {122, KEY_F1}, {126, KEY_UP}};
    for (const auto& [code, evdev] : rows) EXPECT_EQ(evdevCodeOf(code), evdev) << code;
    for (const unsigned unknown : {0U, 7U, 8U + KEY_PAUSE, 8U + KEY_SYSRQ, 256U, 1000U})
        EXPECT_EQ(keyCodeOfX(unknown), std::nullopt) << unknown;
}

}  // namespace
}  // namespace vantor
