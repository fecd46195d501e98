// Typing and pressing: what is posted, in which order, with which waits, and what comes before it.

#include "input/ClipboardManager.h"

#include <gmock/gmock.h>

#include "fake/FakeKeyboardLayout.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "unit/Typing.h"

namespace vantor {
namespace {

using namespace modifier;
using namespace std::chrono_literals;
using Missing = ClipboardManager::Missing;
using Waits = std::vector<std::chrono::microseconds>;
using testing::ElementsAre;

// "56↓ 0↓/131328 0↑/131328 56↑": code and direction, and the flags where there are any; "@1" in another layout.
std::string written(FakeKeyPoster& poster) {
    std::string text;
    for (const auto& key : std::exchange(poster.posted, {})) {
        text += (text.empty() ? "" : " ") + std::to_string(key.keyCode) + (key.down ? "↓" : "↑");
        if (key.flags) text += '/' + std::to_string(key.flags);
        if (key.layout) text += '@' + std::to_string(key.layout);
    }
    return text;
}

class ClipboardManagerTest : public testing::Test, protected Typing<XkbKeyboardLayout> {
protected:
    ClipboardManagerTest() : Typing("us", "") {}
    std::string typed(const std::string& text) {
        EXPECT_EQ(manager.typeString(text), "typed in app");
        return written(poster);
    }
    std::string pressed(const std::string& combination) {
        (void)manager.pressReadableKeys(combination);
        return written(poster);
    }
};

TEST_F(ClipboardManagerTest, TypesEachCharacterWithItsModifiersAround) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"A", "56↓ 0↓/131328 0↑/131328 56↑"},
        {"\n", "76↓ 76↑"},
        {"\r", "36↓/256 36↑/256"},
        {"\t", "48↓ 48↑"},
        // Whatever script stands beside it, an emoji is one character, and nothing of it is typed.
        {"ก😀\u0e01👩\u200d🚀ऐ1\ufe0f\u20e3a", "0↓/256 0↑/256"},
        {"\x01", "59↓ 0↓/262400 0↑/262400 59↑"},
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
        {"⌥ + ␣", "49↓ 61↓ 61↑ 49↑"},
        {"?", "44↓/131328 44↑/131328"},  // the first event only: no Shift
        {"⌃ + +", "24↓/131328 59↓ 59↑ 24↑/131328"},
        {"⌃+H", ""},
        {"Ä + ⇧", "56↓ 56↑"},
    };
    for (const auto& [combination, strokes] : rows) EXPECT_EQ(pressed(combination), strokes) << combination;
}

struct ClipboardManagerLayout : testing::Test, Typing<FakeKeyboardLayout> {};

TEST_F(ClipboardManagerLayout, TypesByCodePointsInEachKeysLayoutLearnsAnewAndCountsWhatIsMissing) {
    layout.keys = {{{1, 0}, "\u0915"}, {{2, 0}, "\u093f"}};
    layout.otherKeys = {{{{3, 0}, "h"}, {{4, shift}, "["}}};
    layout.isAnother = true;
    EXPECT_EQ(manager.type("\u0915\u093f[q🙂\r\n"), (Missing{3, false}));
    EXPECT_EQ(written(poster), "1↓/256 1↑/256 2↓/256 2↑/256 56↓@1 4↓/131328@1 4↑/131328@1 56↑@1");
    EXPECT_EQ(manager.pressReadableKeys("⌘ + ⌃ + H"), (Missing{1, false}));
    EXPECT_EQ(written(poster), "3↓/256@1 59↓@1 59↑@1 3↑/256@1");
    layout.keys = {{{5, 0}, "q"}};
    EXPECT_EQ(manager.type("q"), (Missing{1, false})) << "not learned anew without a reason";
    layout.isAnother = true;
    EXPECT_EQ(manager.type("q"), (Missing{0, false}));

    pause.waits.clear();
    poster.slowKey = 5;
    (void)manager.type("q");
    EXPECT_EQ(pause.waits, (Waits{30ms, 8ms, 30ms, 8ms}));
}

// The game would miss what comes earlier or faster.
TEST_F(ClipboardManagerTest, PostsAfterTheFocusWaitInOneTypingWithAWaitAfterEachPostWhateverFails) {
    std::vector<std::size_t> callsAtPost;
    poster.atPost = [&] { callsAtPost.push_back(workspace.calls.size()); };
    poster.failAt = 2;
    EXPECT_EQ(typed("A"), "56↓ 0↓/131328 0↑/131328 56↑") << "the releases behind a failed post go out";
    EXPECT_THAT(workspace.calls, ElementsAre("hide and unhide", "await focus 250"));
    EXPECT_THAT(callsAtPost, ElementsAre(2, 2, 2, 2));
    EXPECT_EQ(pause.waits, Waits(4, 8ms));
    workspace.focusReturns = false;  // types all the same
    EXPECT_EQ(pressed("⇧"), "56↓ 56↑");
    EXPECT_EQ(typed(""), "");
    EXPECT_EQ(workspace.calls.size(), 6U) << "an empty text hands the focus back as well";
    EXPECT_EQ(poster.typingsBegun, 3);

    poster.failure = PostVerdict::lost;
    poster.failAt = 2;
    pause.waits.clear();
    EXPECT_EQ(manager.type(std::string(1000, 'a')), (Missing{0, true}));
    EXPECT_EQ(poster.posted.size(), 2U);
    EXPECT_EQ(pause.waits.size(), 1U) << "nobody waits for keys that go nowhere";
    EXPECT_EQ(poster.postedOutsideTyping, 0);
    EXPECT_FALSE(poster.typing);
}

TEST_F(ClipboardManagerTest, KnowsShiftFromVantorsOwnWindowsUntilItTypes) {
    const auto change = [](ModifierFlags flags) { return KeyEvent{KeyEventType::flagsChanged, 56, flags, {}}; };
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

}  // namespace
}  // namespace vantor
