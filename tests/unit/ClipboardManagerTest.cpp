// Typing and pressing: what is posted, in which order, with which waits, and what comes before it.

#include "input/ClipboardManager.h"

#include <gmock/gmock.h>

#include "fake/FakeKeyboardLayout.h"
#include "input/PastedText.h"
#include "platform/KeyClasses.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "unit/Typing.h"

namespace vantor {
namespace {

using namespace modifier;
using namespace std::chrono_literals;
using End = Typed::End;
using Waits = std::vector<std::chrono::microseconds>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

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
        manager.typeString(text, then);
        return written(poster);
    }
    std::string pressed(const std::string& combination) {
        manager.pressReadableKeys(combination, then);
        return written(poster);
    }

    Typed last;
    const ClipboardManager::Then then = [this](const Typed& done) { last = done; };
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
    for (const auto& [text, strokes] : rows) {
        EXPECT_EQ(typed(text), strokes) << text;
        EXPECT_EQ(statusOf(last), "typed in app");
    }
    // Of what is pasted no control character is left that would press a shortcut, and a line ends once.
    EXPECT_EQ(pastedText("a\r\nb\rc\n\x01\td\x7f\u0085"), "a\nb\rc\n\td");
    EXPECT_EQ(pastedText("a\r\r\nb\r\x01\nc"), "a\r\rb\r\rc") << "two line ends each";
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
    std::size_t unknown = 0;
    const auto then = [&](const Typed& done) { unknown = done.unknown; };
    layout.keys = {{{1, 0}, "\u0915"}, {{2, 0}, "\u093f"}};
    layout.otherKeys = {{{{3, 0}, "h"}, {{4, shift}, "["}}};
    layout.isAnother = true;
    manager.typeString("\u0915\u093f[q🙂\r\n", then);
    EXPECT_EQ(unknown, 3U);
    EXPECT_EQ(written(poster), "1↓/256 1↑/256 2↓/256 2↑/256 56↓@1 4↓/131328@1 4↑/131328@1 56↑@1");
    manager.pressReadableKeys("⌘ + ⌃ + H", then);
    EXPECT_EQ(unknown, 1U);
    EXPECT_EQ(written(poster), "3↓/256@1 59↓@1 59↑@1 3↑/256@1");
    layout.keys = {{{5, 0}, "q"}};
    manager.typeString("q", then);
    EXPECT_EQ(unknown, 1U) << "not learned anew without a reason";
    layout.isAnother = true;
    manager.typeString("q", then);
    EXPECT_EQ(unknown, 0U);

    pause.waits.clear();
    poster.slowKey = 5;
    manager.typeString("q");
    EXPECT_EQ(pause.waits, (Waits{30ms, 8ms, 30ms, 8ms}));
}

// The game would miss what comes earlier or faster.
TEST_F(ClipboardManagerTest, PostsAfterTheFocusWaitInOneTypingWithAWaitAfterEachPostWhateverFails) {
    std::vector<std::size_t> callsAtPost;
    poster.atPost = [&] { callsAtPost.push_back(workspace.calls.size()); };
    poster.failAt = 2;
    EXPECT_EQ(typed("A"), "56↓ 0↓/131328 0↑/131328 56↑") << "the releases behind a failed post go out";
    EXPECT_TRUE(last.refused);
    EXPECT_THAT(workspace.calls, ElementsAre("hide and unhide", "await focus 250"));
    EXPECT_THAT(callsAtPost, ElementsAre(2, 2, 2, 2));
    EXPECT_EQ(pause.waits, Waits(4, 8ms));
    EXPECT_EQ(typed(""), "");
    EXPECT_EQ(workspace.calls.size(), 4U) << "an empty text hands the focus back as well";
    EXPECT_EQ(poster.typingsBegun, 2);
    EXPECT_THAT(said, ElementsAre());

    // Where the keyboard would be Vantor's own, or nobody's.
    workspace.focusReturns = false;
    EXPECT_EQ(pressed("⇧") + typed("a"), "");
    EXPECT_EQ(statusOf(last), "stopped");
    workspace.focusReturns = true;
    poster.allowed = false;
    EXPECT_EQ(typed("a"), "");
    poster.allowed = true;
    EXPECT_THAT(said, ElementsAre(HasSubstr("keyboard back"), HasSubstr("keyboard back"), HasSubstr("dialog")));

    poster.failure = PostVerdict::lost;
    poster.failAt = 2;
    pause.waits.clear();
    manager.typeString(std::string(1000, 'a'), then);
    EXPECT_EQ(last, (Typed{End::lost, 1, 1000, 0, true}));
    EXPECT_EQ(poster.posted.size(), 2U);
    EXPECT_EQ(pause.waits.size(), 1U) << "nobody waits for keys that go nowhere";
    EXPECT_EQ(poster.postedOutsideTyping, 0);
    EXPECT_FALSE(poster.typing);
}

TEST_F(ClipboardManagerTest, EndsBeforeTheNextStrokeLeavesNothingDownAndSaysHowFarItCame) {
    const KeyEvent walking{KeyEventType::keyDown, 13, 0, "w"};
    const KeyEvent typing{KeyEventType::keyDown, 4, 0, "h"};
    struct {
        const char* reason;
        std::function<void()> happens;
    } const ways[] = {
        {"stopped", [this] { manager.stop(); }},
        {"another window has the keyboard", [this] { workspace.focusMoves = [] { return true; }; }},
        {"stopped", [this] { monitors.pressInGame({KeyEventType::keyDown, key_code::escape, 0, ""}); }},
        {"you pressed a key", [&] { monitors.pressInGame(typing); }},
    };
    const std::pair<std::size_t, const char*> rows[] = {
        {1, "0↓/256 0↑/256"}, {2, "0↓/256 0↑/256"}, {3, "0↓/256 0↑/256 56↓ 56↑"}};
    for (const auto& way : ways)
        for (const auto& [moment, strokes] : rows) {
            SCOPED_TRACE(std::string(way.reason) + " at " + std::to_string(moment));
            said.clear();
            workspace.focusMoves = nullptr;
            monitors.pressInGame({KeyEventType::keyUp, 4, 0, "h"});
            monitors.pressInGame({KeyEventType::keyUp, key_code::escape, 0, ""});
            monitors.pressInGame(walking);
            poster.atPost = [&] {
                monitors.pressInGame(walking);  // repeats
                if (poster.posted.size() == moment) way.happens();
            };
            EXPECT_EQ(typed("aBc"), strokes);
            EXPECT_EQ(statusOf(last), "stopped");
            EXPECT_THAT(said, ElementsAre(std::string("typing ended after 1 of 3 characters: ") + way.reason));
        }
    // A combination is pressed whole, whatever the player does.
    poster.atPost = [&] { monitors.pressInGame(typing), manager.stop(); };
    workspace.focusMoves = nullptr;
    EXPECT_EQ(pressed("⇧ + F1"), "122↓ 56↓ 56↑ 122↑");
}

TEST_F(ClipboardManagerTest, WhatWaitsFollowsInOrderAndAStopTakesTheTextsThatWaitWithIt) {
    std::vector<std::string> order;
    const auto tell = [&](const std::string& name) {
        return [&order, name](const Typed& done) { order.push_back(name + " " + statusOf(done)); };
    };
    poster.atPost = [&] {
        if (poster.posted.size() == 1) {
            manager.typeLater(100ms, [] { return std::string("bb"); }, tell("second"));
            manager.typeString("c", tell("third"));
            manager.pressReadableKeys("F1", tell("camera"));
        }
        if (poster.posted.size() == 3) manager.stop();
    };
    manager.typeString("a", tell("first"));
    EXPECT_EQ(written(poster), "0↓/256 0↑/256 11↓/256 11↑/256 122↓ 122↑");
    EXPECT_THAT(order, ElementsAre("first typed in app", "second stopped", "third stopped", "camera typed in app"));
    EXPECT_THAT(said, SizeIs(1)) << "one stop, one line";
    EXPECT_FALSE(manager.isBusy());
    poster.atPost = nullptr;

    // What waits when another window gets the keyboard was not meant for that one.
    workspace.focusMoves = [left = 2]() mutable { return --left == 0; };
    poster.atPost = [&] { manager.typeString("d"); };
    EXPECT_EQ(typed("ab"), "0↓/256 0↑/256");
    workspace.focusMoves = nullptr;
    poster.atPost = nullptr;
    manager.typeLater(1ms, [] { return std::nullopt; }, then);
    EXPECT_EQ(last.end, End::focusMoved);
    EXPECT_EQ(written(poster), "");

    // Nothing comes after a stop within the delay.
    pause.atWait = [&] { manager.stop(); };
    bool asked = false;
    manager.typeLater(600ms, [&] { return asked = true, std::string("d"); });
    EXPECT_FALSE(asked);
    EXPECT_EQ(written(poster), "");
    pause.atWait = nullptr;
    EXPECT_EQ(typed("d"), "2↓/256 2↑/256") << "the next one is typed";
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
