// The keyboard: what a layout gives, what typing posts and to whom, and what the monitors hear.

#include <gmock/gmock.h>

#include <csignal>

#include "Mac.h"
#include "base/AtOnce.h"
#include "fake/FakePause.h"
#include "input/ClipboardManager.h"
#include "input/ReadableKeyText.h"
#include "platform/macos/EventKeyboardLayout.h"
#include "platform/macos/EventMonitors.h"
#include "platform/macos/HidTapKeyPoster.h"
#include "platform/macos/SharedWorkspace.h"

namespace vantor {
namespace {

using macdouble::done;
using macdouble::mac;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr ModifierFlags plain = modifier::nonCoalesced;
constexpr bool here = true;
constexpr bool elsewhere = false;

class KeysTest : public testing::Test {
protected:
    Subscription hearElsewhere(KeyEventType type) {
        return monitors.addGlobalMonitor(
            maskOf(type), [this](const KeyEvent& event) { heard.push_back("elsewhere " + readableKeyText(event)); });
    }
    Subscription hearHere(KeyEventType type) {
        return monitors.addLocalMonitor(maskOf(type), [this](const KeyEvent& event) {
            heard.push_back("here " + readableKeyText(event));
            return passing;
        });
    }

    KeyboardEvents events;
    EventKeyboardLayout layout{events};
    SharedWorkspace workspace;
    HidTapKeyPoster poster{events};
    EventMonitors monitors;
    FakePause pause;
    KeyMonitors::Passing passing = KeyMonitors::Passing::passOn;
    std::vector<std::string> heard;
};

TEST_F(KeysTest, TypesIntoTheGameWithEventsThatWereMadeBefore) {
    TaskQueueAtOnce typingThread;
    MainThreadAtOnce mainThread;
    std::vector<std::string> said;
    ClipboardManager typist({.typist = {layout, poster, workspace, pause},
                             .monitors = monitors,
                             .workspace = workspace,
                             .typingThread = typingThread,
                             .mainThread = mainThread,
                             .say = [&](const std::string& line) { said.push_back(line); }});
    EXPECT_THAT(*typist.keyMap().find("å"), ElementsAre(MappedKey{0, plain | modifier::option}, MappedKey{61, 0}));
    EXPECT_FALSE(layout.translate(1, plain) || layout.translate(128, plain)) << "keys that give nothing";
    const int made = mac().madeEvents;
    for (const int looks : {0, 1, 3}) {
        // As after a click into the overlay.
        mac().active = true;
        mac().looksUntilHidden = looks;
        typist.typeString("A\n\xF0\x9F\x98\x80");
        EXPECT_THAT(done(),
                    ElementsAre("down 56", "down 0 flags 131328", "up 0 flags 131328", "up 56", "down 76", "up 76"));
    }
    EXPECT_EQ(mac().madeEvents, made);
    EXPECT_EQ(poster.post({.keyCode = 200}), PostVerdict::noSuchKey);
    EXPECT_FALSE(KeyboardEvents::isOwn(nullptr));
    mac().refusesEvents = true;
    EXPECT_EXIT(const KeyboardEvents none, testing::KilledBySignal(SIGABRT), "makes no event for the key 0");

    mac().active = true;
    mac().looksUntilHidden = 1'000'000;
    typist.typeString("a");
    EXPECT_THAT(said, ElementsAre(testing::HasSubstr("nothing was typed")));
    EXPECT_THAT(done(), IsEmpty());
    // The player has gone over by hand.
    mac().active = false;
    typist.pressReadableKeys("⌃ + ⇧ + F1");
    EXPECT_THAT(done(), ElementsAre("down 122", "down 56", "down 59", "up 59", "up 56", "up 122"));

    // Another application comes to the front, once it is known that Vantor is not there any more.
    mac().setFrontmost(ownIdentifier);
    ASSERT_TRUE(workspace.awaitOther(std::chrono::milliseconds(0)));
    for (const char* each : {"net.arena.Guild-Wars-2", "org.other"}) {
        mac().setFrontmost(each);
        EXPECT_EQ(workspace.isKept(), each != std::string("org.other"));
    }
}

TEST_F(KeysTest, MonitorsHearWhatTheyAskedForAndSwallow) {
    const auto global = hearElsewhere(KeyEventType::keyUp);
    auto local = hearHere(KeyEventType::keyUp);
    const auto modifiers = hearHere(KeyEventType::flagsChanged);
    EXPECT_FALSE(monitors.heardOthers());
    mac().press(kCGEventKeyUp, 0, modifier::shift | modifier::command, elsewhere);
    EXPECT_TRUE(monitors.heardOthers());
    // A hotkey's name has the key's own character, not what the modifiers make of it.
    mac().press(kCGEventKeyUp, 0, modifier::option, elsewhere);
    mac().press(kCGEventKeyDown, 0, 0, elsewhere);
    EXPECT_TRUE(mac().press(kCGEventKeyUp, 0, 0, here));
    passing = KeyMonitors::Passing::swallow;
    EXPECT_FALSE(mac().press(kCGEventKeyUp, 0, 0, here));
    EXPECT_TRUE(mac().press(kCGEventKeyDown, 0, 0, here));
    EXPECT_FALSE(mac().press(kCGEventFlagsChanged, 56, modifier::shift, here));
    EXPECT_THAT(heard, ElementsAre("elsewhere ⌘ + ⇧ + A", "elsewhere ⌥ + A", "here A", "here A", "here ⇧ + "));

    // The system gives the arrows both flags, a keypad's key the one.
    heard.clear();
    const ModifierFlags byItself = modifier::numericPad | modifier::function;
    for (const CGKeyCode arrow : {CGKeyCode{123}, CGKeyCode{126}})
        mac().press(kCGEventKeyUp, arrow, byItself, elsewhere);
    mac().press(kCGEventKeyUp, 87, modifier::numericPad, elsewhere);
    EXPECT_THAT(heard, ElementsAre("elsewhere ←", "elsewhere ↑", "elsewhere numpad 5"));

    // What Vantor posts comes back to nobody, and arrives where it is typed.
    heard.clear();
    (void)poster.post({.keyCode = 0, .flags = plain, .down = false});
    EXPECT_TRUE(mac().hearPosted(elsewhere) && mac().hearPosted(here));
    local.reset();
    EXPECT_TRUE(mac().press(kCGEventKeyUp, 0, 0, here));
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KeysTest, AMonitorMayEndItselfAndIsNotRenewedThen) {
    std::vector<std::string> told;
    Subscription global;
    Subscription local;
    global = monitors.addGlobalMonitor(maskOf(KeyEventType::keyUp), [&](const KeyEvent& event) {
        global.reset();
        told.push_back("elsewhere " + readableKeyText(event));
    });
    local = monitors.addLocalMonitor(maskOf(KeyEventType::keyUp), [&](const KeyEvent& event) {
        local.reset();
        told.push_back("here " + readableKeyText(event));
        return KeyMonitors::Passing::swallow;
    });
    for (int time = 0; time < 2; ++time) {
        mac().press(kCGEventKeyUp, 0, 0, elsewhere);
        EXPECT_EQ(mac().press(kCGEventKeyUp, 0, 0, here), time == 1);
        monitors.renew();
    }
    EXPECT_THAT(told, ElementsAre("elsewhere A", "here A"));
}

}  // namespace
}  // namespace vantor
