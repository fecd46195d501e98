// The keyboard: what a layout gives, what typing posts, event by event, and what the monitors hear.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <optional>

#include "KeyDouble.h"
#include "ServiceCalls.h"
#include "fake/FakeDefaults.h"
#include "input/ClipboardManager.h"
#include "input/HotkeyCapture.h"
#include "input/ReadableKeyText.h"
#include "platform/macos/EventKeyboardLayout.h"
#include "platform/macos/EventMonitors.h"
#include "platform/macos/HidTapKeyPoster.h"
#include "platform/macos/SharedWorkspace.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ModifierFlags plain = modifier::nonCoalesced;
constexpr int keyCodes = 128;
constexpr int modifierSets = 8;

struct CountedPause final : Pause {
    void wait(std::chrono::microseconds duration) override {
        macdouble::serviceCalls().add("sleep " + std::to_string(duration.count()));
    }
};

// The keys of an American keyboard that the tests need; every other key gives nothing.
std::string american(CGKeyCode keyCode, CGEventFlags flags) {
    const bool shift = (flags & modifier::shift) != 0;
    switch (keyCode) {
        case 0:
            return (flags & modifier::control) != 0  ? "\x01"
                   : (flags & modifier::option) != 0 ? "å"
                   : shift                           ? "A"
                                                     : "a";
        case 24:
            return shift ? "+" : "=";
        case 81:
            return "=";
        case 23:
            return shift ? "%" : "5";
        case 87:
            return "5";
        case 36:
            return "\r";
        case 48:
            return "\t";
        default:
            return "";
    }
}

class KeysTest : public testing::Test {
protected:
    KeysTest() {
        macdouble::setLayout(american);
        (void)macdouble::serviceCalls().take();
    }
    ~KeysTest() override {
        macdouble::setLayout({});
        (void)macdouble::serviceCalls().take();
    }
    // What was posted, without the pauses, which have to be there after each.
    static std::vector<std::string> posts() {
        std::vector<std::string> found;
        const auto calls = macdouble::serviceCalls().take();
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (!calls[at].starts_with("post ")) continue;
            EXPECT_TRUE(at + 1 < calls.size() && calls[at + 1] == "sleep 8000") << calls[at];
            EXPECT_TRUE(calls[at].starts_with("post to tap 0: ")) << calls[at];
            found.push_back(calls[at].substr(15));
        }
        return found;
    }

    KeyboardEvents events;
    EventKeyboardLayout layout{events};
    HidTapKeyPoster poster{events};
    EventMonitors monitors;
    SharedWorkspace workspace;
    CountedPause pause;
};

TEST_F(KeysTest, LearnsWhatTheLayoutInForceGives) {
    EXPECT_EQ(layout.translate(0, plain)->characters, "a");
    EXPECT_EQ(layout.translate(0, plain | modifier::shift)->characters, "A");
    EXPECT_EQ(layout.translate(0, plain | modifier::shift)->flags, plain | modifier::shift);
    EXPECT_FALSE(layout.translate(1, plain)) << "a key that gives nothing";
    EXPECT_FALSE(layout.translate(128, plain));

    const KeyMap map = KeyMap::learn(layout);
    EXPECT_THAT(*map.find("å"), ElementsAre(MappedKey{0, plain | modifier::option}, MappedKey{61, 0}));
    EXPECT_THAT(*map.find("5"), ElementsAre(MappedKey{23, plain}));
    EXPECT_THAT(*map.find("5 [NUM]"), ElementsAre(MappedKey{87, plain}));
}

TEST_F(KeysTest, TypesEventByEventWithEventsMadeOnce) {
    const int before = macdouble::liveEvents();
    {
        KeyboardEvents own;
        EventKeyboardLayout asked(own);
        HidTapKeyPoster posting(own);
        ClipboardManager typist(asked, posting, monitors, workspace, pause);
        // The one that hears of Shift comes when the map is learned.
        EXPECT_THAT(macdouble::serviceCalls().take(), ElementsAre("local monitor 4096"));
        EXPECT_EQ(macdouble::liveEvents() - before, keyCodes * (1 + modifierSets) - 5 * modifierSets)
            << "each key plain and with every set of modifiers, five keys apart that are never asked";

        const int made = macdouble::madeEvents();
        EXPECT_EQ(typist.typeString("A\n\xF0\x9F\x98\x80"), "typed in app");
        const auto calls = macdouble::serviceCalls().take();
        ASSERT_EQ(calls.size(), 14U) << "six posts with their pauses, after the focus";
        EXPECT_EQ(calls[0], "hide");
        EXPECT_EQ(calls[1], "unhide without activation");
        (void)typist.typeString("A\n\xF0\x9F\x98\x80");
        EXPECT_THAT(posts(),
                    ElementsAre("down 56", "down 0 flags 131328", "up 0 flags 131328", "up 56", "down 76", "up 76"));
        typist.pressReadableKeys("⌃ + ⇧ + F1");
        EXPECT_THAT(posts(), ElementsAre("down 122", "down 56", "down 59", "up 59", "up 56", "up 122"));
        typist.pressReadableKeys("⌥");
        EXPECT_THAT(posts(), ElementsAre("down 61", "up 61"));
        EXPECT_EQ(macdouble::madeEvents(), made) << "typing makes no events";
    }
    EXPECT_EQ(macdouble::liveEvents(), before) << "all are released";
    EXPECT_EQ(poster.post({.keyCode = 200}), PostVerdict::noSuchKey);
}

TEST_F(KeysTest, AnEventThatCannotBeMadeEndsTheProgram) {
    EXPECT_EXIT(
        {
            macdouble::refuseEvents(true);
            const KeyboardEvents none;
        },
        testing::KilledBySignal(SIGABRT), "vantor: the system makes no event for the key 0");
}

TEST_F(KeysTest, MonitorsHearAndSwallow) {
    std::vector<std::string> heard;
    auto passing = KeyMonitors::Passing::passOn;
    auto elsewhere = monitors.addGlobalMonitor(maskOf(KeyEventType::keyUp), [&](const KeyEvent& event) {
        heard.push_back("elsewhere " + readableKeyText(event));
    });
    auto here = monitors.addLocalMonitor(maskOf(KeyEventType::keyUp), [&](const KeyEvent& event) {
        heard.push_back("here " + readableKeyText(event));
        return passing;
    });
    EXPECT_THAT(macdouble::serviceCalls().take(), ElementsAre("global monitor 2048", "local monitor 2048"));

    macdouble::pressElsewhere(kCGEventKeyUp, 0, modifier::shift | modifier::command);
    macdouble::pressElsewhere(kCGEventKeyDown, 0, 0);  // not asked for
    EXPECT_TRUE(macdouble::pressHere(kCGEventKeyUp, 0, 0));
    passing = KeyMonitors::Passing::swallow;
    EXPECT_FALSE(macdouble::pressHere(kCGEventKeyUp, 0, 0));
    EXPECT_THAT(heard, ElementsAre("elsewhere ⌘ + ⇧ + A", "here A", "here A"));

    // A hotkey's name has the key's own character, not what the modifiers make of it.
    macdouble::pressElsewhere(kCGEventKeyUp, 0, modifier::option);
    EXPECT_EQ(heard.back(), "elsewhere ⌥ + A");

    // The system gives the arrows both flags, a keypad's key the one.
    heard.clear();
    const ModifierFlags byItself = modifier::numericPad | modifier::function;
    for (CGKeyCode arrow = 123; arrow <= 126; ++arrow) macdouble::pressElsewhere(kCGEventKeyUp, arrow, byItself);
    macdouble::pressElsewhere(kCGEventKeyUp, 87, modifier::numericPad);
    EXPECT_THAT(heard, ElementsAre("elsewhere ←", "elsewhere →", "elsewhere ↓", "elsewhere ↑", "elsewhere numpad 5"));

    // What Vantor posts comes back to nobody; the same key of the hardware does.
    heard.clear();
    (void)poster.post({.keyCode = 0, .flags = plain, .down = false});
    passing = KeyMonitors::Passing::swallow;
    EXPECT_TRUE(macdouble::hear(macdouble::lastPosted())) << "what is typed into a field of ours arrives";
    EXPECT_THAT(heard, IsEmpty());
    macdouble::pressElsewhere(kCGEventKeyUp, 0, plain);
    EXPECT_THAT(heard, ElementsAre("elsewhere A"));

    // Once the player has allowed it, in their order; those of own windows were never deaf.
    auto second = monitors.addGlobalMonitor(maskOf(KeyEventType::keyDown), [](const KeyEvent&) {});
    (void)macdouble::serviceCalls().take();
    monitors.renew();
    EXPECT_THAT(macdouble::serviceCalls().take(), ElementsAre("remove monitor 2048", "global monitor 2048",
                                                              "remove monitor 1024", "global monitor 1024"));
    macdouble::pressElsewhere(kCGEventKeyUp, 0, plain);
    EXPECT_THAT(heard, ElementsAre("elsewhere A", "elsewhere A"));
    second.reset();
    heard.pop_back();

    (void)macdouble::serviceCalls().take();
    here.reset();
    elsewhere.reset();
    EXPECT_THAT(macdouble::serviceCalls().take(), ElementsAre("remove monitor 2048", "remove monitor 2048"));
    macdouble::pressElsewhere(kCGEventKeyUp, 0, 0);
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(KeysTest, AMonitorMayEndItself) {
    std::vector<std::string> heard;
    Subscription elsewhere;
    Subscription here;
    elsewhere = monitors.addGlobalMonitor(maskOf(KeyEventType::keyUp), [&](const KeyEvent& event) {
        elsewhere.reset();
        heard.push_back("elsewhere " + readableKeyText(event));
    });
    here = monitors.addLocalMonitor(maskOf(KeyEventType::keyUp), [&](const KeyEvent& event) {
        here.reset();
        heard.push_back("here " + readableKeyText(event));
        return KeyMonitors::Passing::swallow;
    });
    for (int time = 0; time < 2; ++time) {
        macdouble::pressElsewhere(kCGEventKeyUp, 0, 0);
        EXPECT_EQ(macdouble::pressHere(kCGEventKeyUp, 0, 0), time == 1);
    }
    EXPECT_THAT(heard, ElementsAre("elsewhere A", "here A"));
}

TEST_F(KeysTest, ShiftAndHotkeysAreHeardInOwnWindows) {
    FakeDefaults defaults;
    ClipboardManager typist(layout, poster, monitors, workspace, pause);
    EXPECT_TRUE(macdouble::pressHere(kCGEventFlagsChanged, 56, modifier::shift));
    EXPECT_TRUE(typist.shiftPressed());
    EXPECT_TRUE(macdouble::pressHere(kCGEventFlagsChanged, 56, 0));
    EXPECT_FALSE(typist.shiftPressed());

    (void)macdouble::serviceCalls().take();
    {
        HotkeyCapture capture(defaults, "general.windowToggleEvent", monitors, [] {});
        EXPECT_FALSE(macdouble::pressHere(kCGEventKeyDown, 0, modifier::command | modifier::shift));
        EXPECT_EQ(capture.newEvent(), "⌘ + ⇧ + A");
    }
    EXPECT_THAT(macdouble::serviceCalls().take(), ElementsAre("local monitor 1024", "remove monitor 1024"));
}

}  // namespace
}  // namespace vantor
