#include "app/WindowPlaces.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

const Screen left{{0, 0, 1360, 820}, "LEFT"};
const Screen right{{1360, 0, 1920, 1080}, "RIGHT"};
const std::vector<Screen> one{left};
const std::vector<Screen> two{left, right};

TEST(WindowPlaces, BelongToTheScreenWithMostOfTheGame) {
    EXPECT_EQ(screenOf(std::nullopt, two), left);
    EXPECT_EQ(screenOf(Rect{1000, 0, 800, 600}, two), right);
    EXPECT_EQ(screenOf(Rect{900, 0, 800, 600}, two), left);
    EXPECT_EQ(screenOf(Rect{5000, 0, 800, 600}, two), left);
}

TEST(WindowPlaces, OfTheDaysOfOneMonitorStayWhereTheyWereAndComeBackWhenItIsGone) {
    const struct {
        const char* stored;
        const std::vector<Screen>& screens;
        Rect expected;
    } cases[] = {
        {"100 100 250 60", one, {100, 100, 250, 60}},
        {"1312 100 250 60", one, {1312, 100, 250, 60}},  // partly off, still reachable
        {"1350 100 250 60", one, {1110, 100, 250, 60}},
        {"2000 300 250 60", one, {1110, 300, 250, 60}},
        {"-3000 -400 920 600", one, {0, 0, 920, 600}},
        {"200 -20 920 600", one, {200, 0, 920, 600}},   // the title bar would be out of reach
        {"2040 540 250 60", two, {482, 410, 250, 60}},  // the game is on the other monitor now
        {"5000 900 3000 2000", one, {0, 0, 1360, 820}},
        {"2147483000 0 920 600", one, {440, 0, 920, 600}},
    };
    for (const auto& row : cases) EXPECT_EQ(placeOn(left, row.screens, row.stored, 1, 1), row.expected) << row.stored;
    for (const char* damaged : {"", "1 2 3", "1 2 3 4 5", "1 2 3 0", "1 2 -3 4", " 1 2 3 4", "1,2,3,4", "a 2 3 4",
                                "99999999999 2 3 4", "1 2 3 4 0 820 LEFT", ";;"})
        EXPECT_EQ(placeOn(left, two, damaged, 250, 60), (Rect{555, 380, 250, 60})) << damaged;
}

TEST(WindowPlaces, AreKeptForEachMonitorOfTheGame) {
    const Rect onLeft{100, 100, 250, 60};
    const Rect onRight{3000, 1000, 250, 60};
    const std::string first = withPlace("1 2 3 4", onLeft, left);
    EXPECT_EQ(first, "100 100 250 60 1360 820 LEFT");
    EXPECT_TRUE(isPlainFrame("100 100 250 60", onLeft));
    EXPECT_FALSE(isPlainFrame("9 100 250 60", onLeft) || isPlainFrame(first, onLeft));
    EXPECT_EQ(placeOn(right, two, first, 1, 1), (Rect{1501, 132, 250, 60})) << "in proportion, as long as it has none";
    const std::string both = withPlace(first, onRight, right);
    EXPECT_EQ(placeOn(left, two, both, 1, 1), onLeft);
    EXPECT_EQ(placeOn(right, two, both, 1, 1), onRight);
    const std::string again = withPlace(both, {7, 8, 250, 60}, left);
    EXPECT_EQ(placeOn(left, two, again, 1, 1), (Rect{7, 8, 250, 60}));
    EXPECT_EQ(placeOn(right, two, again, 1, 1), onRight);

    // Kept beside the game by the player, on the other monitor: brought back only when that one is gone.
    const std::string beside = withPlace(both, {1500, 50, 250, 60}, left);
    EXPECT_EQ(placeOn(left, two, beside, 1, 1), (Rect{1500, 50, 250, 60}));
    EXPECT_EQ(placeOn(left, one, beside, 1, 1), (Rect{1110, 50, 250, 60}));
    // The same pixels at twice the scale, as far as there is room.
    const Screen scaled{{0, 0, 680, 410}, "LEFT"};
    EXPECT_EQ(placeOn(scaled, std::vector{scaled}, withPlace("", {600, 400, 250, 60}, left), 1, 1),
              (Rect{300, 200, 250, 60}));
    EXPECT_EQ(placeOn(scaled, std::vector{scaled}, withPlace("", {1110, 760, 250, 60}, left), 1, 1),
              (Rect{430, 350, 250, 60}));
    // Another monitor in its place.
    EXPECT_EQ(placeOn(right, std::vector{right}, withPlace("", onLeft, {left.frame, "a;b"}), 1, 1),
              (Rect{1501, 132, 250, 60}));
}

}  // namespace
}  // namespace vantor
