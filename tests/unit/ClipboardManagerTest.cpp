// Typing and pressing: what is posted, in which order, with which waits, and what comes before it.

#include "input/ClipboardManager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakePause.h"
#include "fake/FakeWorkspace.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

using namespace modifier;

// "56↓ 0↓/131328 0↑/131328 56↑": code and direction, and the flags where there are any.
std::string written(const std::vector<PostedKey>& posted) {
    std::string text;
    for (const auto& key : posted) {
        if (!text.empty()) text += ' ';
        text += std::to_string(key.keyCode) + (key.down ? "↓" : "↑");
        if (key.flags) text += '/' + std::to_string(key.flags);
    }
    return text;
}

class ClipboardManagerTest : public testing::Test {
protected:
    std::string typed(const std::string& text) {
        poster.posted.clear();
        EXPECT_EQ(manager.typeString(text), "typed in app");
        return written(poster.posted);
    }
    std::string pressed(const std::string& combination) {
        poster.posted.clear();
        manager.pressReadableKeys(combination);
        return written(poster.posted);
    }

    XkbKeyboardLayout layout{"us", ""};
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    ClipboardManager manager{layout, poster, monitors, workspace, pause};
};

TEST_F(ClipboardManagerTest, TypesEachCharacterWithItsModifiersAround) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"A", "56↓ 0↓/131328 0↑/131328 56↑"},
        {"ab", "0↓/256 0↑/256 11↓/256 11↑/256"},
        {"\n", "76↓ 76↑"},
        {"\r", "36↓/256 36↑/256"},
        {"\t", "48↓ 48↑"},
        // Whatever script stands beside it, an emoji is one character, and nothing of it is typed.
        {"ก😀\u0e01👩\u200d🚀ऐ1\ufe0f\u20e3a", "0↓/256 0↑/256"},
        {"5", "23↓/256 23↑/256"},
        {"\x01", "59↓ 0↓/262400 0↑/262400 59↑"},
        {"a🙂b", "0↓/256 0↑/256 11↓/256 11↑/256"},
        {"a👩‍👧‍👦b", "0↓/256 0↑/256 11↓/256 11↑/256"},
        {"a\u0301b", "11↓/256 11↑/256"},  // an accented a is one character, which this layout does not type
        {"\r\n", ""},                     // so are these two
        {"\n\r", "76↓ 76↑ 36↓/256 36↑/256"},
        {"a\xff"
         "b",
         "0↓/256 0↑/256 11↓/256 11↑/256"},
    };
    for (const auto& [text, strokes] : rows) EXPECT_EQ(typed(text), strokes) << text;
}

TEST_F(ClipboardManagerTest, PressesTheNamedKeyFirstAndItsModifiersAfterIt) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {" ", "49↓/256 49↑/256"},  // who does not want an unset key pressed trims it before
        {"⌃ + ⇧ + F1", "122↓ 56↓ 59↓ 59↑ 56↑ 122↑"},
        {"⌘ + V", "9↓/256 9↑/256"},
        {"⇪ + fn + H", "4↓/256 4↑/256"},
        {"numpad 5", ""},
        {"numpad ↩︎", ""},
        {"↩︎", "76↓ 76↑"},
        {"⌥ + ␣", "49↓ 61↓ 61↑ 49↑"},
        {"?", "44↓/131328 44↑/131328"},  // the first event only: no Shift
        {"⌃ + +", "24↓/131328 59↓ 59↑ 24↑/131328"},
        {"⌃+H", ""},
        {"Ä + ⇧", "56↓ 56↑"},
    };
    for (const auto& [combination, strokes] : rows) EXPECT_EQ(pressed(combination), strokes) << combination;
}

TEST_F(ClipboardManagerTest, HandsTheFocusBackFirstAndWaitsAfterEveryPost) {
    typed("Ab");
    EXPECT_EQ(workspace.calls, (std::vector<std::string>{"hide and unhide", "await focus 250"}));
    EXPECT_EQ(pause.waits, std::vector<std::chrono::microseconds>(6, std::chrono::microseconds(8000)));
    workspace.focusReturns = false;  // types all the same
    EXPECT_EQ(pressed("⇧"), "56↓ 56↑");
    EXPECT_EQ(workspace.calls.size(), 4U);
    EXPECT_EQ(pause.waits.size(), 8U);
    typed("");
    EXPECT_EQ(workspace.calls.size(), 6U) << "an empty text hands the focus back as well";
}

TEST(ClipboardManagerLayout, TypesByCodePointsInEachKeysLayoutLearnsAnewAndCountsWhatIsMissing) {
    FakeKeyboardLayout layout;
    layout.keys = {{{1, 0}, "\u0915"}, {{2, 0}, "\u093f"}};
    layout.otherKeys = {{{{3, 0}, "h"}, {{4, shift}, "["}}};
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    ClipboardManager manager(layout, poster, monitors, workspace, pause);
    using Missing = ClipboardManager::Missing;
    EXPECT_EQ(manager.type("\u0915\u093f[q🙂\r\n"), (Missing{3, false}));
    EXPECT_EQ(poster.posted, (std::vector<PostedKey>{{1, nonCoalesced, true},
                                                     {1, nonCoalesced, false},
                                                     {2, nonCoalesced, true},
                                                     {2, nonCoalesced, false},
                                                     {56, 0, true, 1},
                                                     {4, shift | nonCoalesced, true, 1},
                                                     {4, shift | nonCoalesced, false, 1},
                                                     {56, 0, false, 1}}));
    poster.posted.clear();
    EXPECT_EQ(manager.pressReadableKeys("⌘ + ⌃ + H"), (Missing{1, false}));
    EXPECT_EQ(poster.posted,
              (std::vector<PostedKey>{
                  {3, nonCoalesced, true, 1}, {59, 0, true, 1}, {59, 0, false, 1}, {3, nonCoalesced, false, 1}}));
    layout.keys = {{{5, 0}, "q"}};
    EXPECT_EQ(manager.type("q"), (Missing{1, false})) << "not learned anew without a reason";
    layout.isAnother = true;
    EXPECT_EQ(manager.type("q"), (Missing{0, false}));

    pause.waits.clear();
    poster.slowKey = 5;
    (void)manager.type("q");
    using namespace std::chrono_literals;
    EXPECT_EQ(pause.waits, (std::vector<std::chrono::microseconds>{30ms, 8ms, 30ms, 8ms}));
    poster.failAt = static_cast<int>(poster.posted.size()) + 1;
    EXPECT_EQ(manager.type("q"), (Missing{0, true}));
}

TEST(ClipboardManagerOrder, PostsOnlyAfterTheFocusWaitAndReleasesAfterAFailedPost) {
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    // What had happened at each wait.
    struct Sentinel final : Pause {
        Sentinel(FakeKeyPoster& post, FakeWorkspace& desktop) : poster(post), workspace(desktop) {}
        void wait(std::chrono::microseconds) override {
            seen.emplace_back(workspace.calls.size(), poster.posted.size());
        }
        FakeKeyPoster& poster;
        FakeWorkspace& workspace;
        std::vector<std::pair<std::size_t, std::size_t>> seen;
    } pause(poster, workspace);
    XkbKeyboardLayout layout("us", "");
    ClipboardManager manager(layout, poster, monitors, workspace, pause);
    poster.failAt = 2;
    EXPECT_EQ(manager.typeString("A"), "typed in app");
    EXPECT_EQ(written(poster.posted), "56↓ 0↓/131328 0↑/131328 56↑");
    EXPECT_EQ(pause.seen, (std::vector<std::pair<std::size_t, std::size_t>>{{2, 1}, {2, 2}, {2, 3}, {2, 4}}));
}

TEST_F(ClipboardManagerTest, EachTextAndCombinationIsOneTypingThatEndsWhereThePosterIsLost) {
    typed("Ab");
    pressed("⇧ + F1");
    EXPECT_EQ(poster.typingsBegun, 2);
    EXPECT_EQ(poster.postedOutsideTyping, 0);
    EXPECT_FALSE(poster.typing);
    poster.failure = PostVerdict::lost;
    poster.failAt = static_cast<int>(poster.posted.size()) + 2;
    const auto before = poster.posted.size();
    const auto waits = pause.waits.size();
    EXPECT_EQ(manager.typeString(std::string(1000, 'a')), "typed in app");
    EXPECT_EQ(poster.posted.size(), before + 2);
    EXPECT_EQ(pause.waits.size(), waits + 1) << "nobody waits for keys that go nowhere";
    EXPECT_FALSE(poster.typing);
}

TEST_F(ClipboardManagerTest, KnowsShiftFromVantorsOwnWindowsUntilItTypes) {
    const auto change = [](ModifierFlags flags) { return KeyEvent{KeyEventType::flagsChanged, 56, flags, {}}; };
    EXPECT_FALSE(manager.shiftPressed());
    monitors.pressInGame(change(shift));
    EXPECT_FALSE(manager.shiftPressed());
    EXPECT_EQ(monitors.pressInVantor(change(shift | command)), KeyMonitors::Passing::passOn);
    EXPECT_TRUE(manager.shiftPressed());
    (void)monitors.pressInVantor({KeyEventType::keyDown, 0, 0, "a"});
    EXPECT_TRUE(manager.shiftPressed());
    (void)monitors.pressInVantor(change(command));
    EXPECT_FALSE(manager.shiftPressed());
    for (const bool typing : {true, false}) {
        (void)monitors.pressInVantor(change(shift));
        typing ? (void)typed("") : (void)pressed("");
        EXPECT_FALSE(manager.shiftPressed());
    }
}

TEST(ClipboardManagerAbsence, IsMadeAndReportsNothingWithoutALayoutOrAPoster) {
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    {
        XkbKeyboardLayout layout("no such layout", "");
        ClipboardManager manager(layout, poster, monitors, workspace, pause);
        EXPECT_EQ(manager.typeString("a\t"), "typed in app");
        EXPECT_EQ(written(poster.posted), "48↓ 48↑");
    }
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::flagsChanged, 56, shift, {}}), KeyMonitors::Passing::passOn);
}

}  // namespace
}  // namespace vantor
