#include "app/WindowPlaces.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(WindowPlaces, ReadsWhatItWroteAndNothingElse) {
    for (const Rect& frame : {Rect{10, 20, 920, 600}, Rect{-1920, -5, 1, 1}})
        EXPECT_EQ(readFrame(writeFrame(frame)), frame);
    EXPECT_EQ(writeFrame({-4, 20, 920, 600}), "-4 20 920 600");
    for (const char* text : {"", "1 2 3", "1 2 3 4 5", "1 2 3 0", "1 2 0 4", " 1 2 3 4", "1,2,3,4", "1 2 3 4 ",
                             "a 2 3 4", "99999999999 2 3 4"})
        EXPECT_EQ(readFrame(text), std::nullopt) << text;
}

TEST(WindowPlaces, BringsAWindowBackWhenItsMonitorIsGone) {
    const std::vector<Rect> one{{0, 0, 1360, 820}};
    const std::vector<Rect> two{{0, 0, 1360, 820}, {1360, 0, 1920, 1080}};
    const struct {
        Rect frame;
        const std::vector<Rect>& screens;
        Rect expected;
    } cases[] = {
        {{100, 100, 250, 60}, one, {100, 100, 250, 60}},
        {{1312, 100, 250, 60}, one, {1312, 100, 250, 60}},  // partly off, still reachable
        {{1350, 100, 250, 60}, one, {1110, 100, 250, 60}},
        {{2000, 300, 250, 60}, two, {2000, 300, 250, 60}},
        {{2000, 300, 250, 60}, one, {1110, 300, 250, 60}},
        {{-3000, -400, 920, 600}, one, {0, 0, 920, 600}},
        {{200, -20, 920, 600}, one, {200, 0, 920, 600}},  // the title bar would be out of reach
        {{5000, 900, 3000, 2000}, two, {1360, 0, 1920, 1080}},
        {{2147483000, 0, 920, 600}, two, {2360, 0, 920, 600}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(broughtOntoScreen(row.frame, row.screens), row.expected) << writeFrame(row.frame);
    EXPECT_EQ(centred({0, 0, 250, 60}, one[0]), (Rect{555, 380, 250, 60}));
}

}  // namespace
}  // namespace vantor
