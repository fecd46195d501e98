// What a released key asks for, with the settings as they are at that moment.

#include "app/HotkeyDispatcher.h"

#include <gtest/gtest.h>

#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"

namespace vantor {
namespace {

const KeyEvent escape{KeyEventType::keyUp, 53, modifier::shift, "\x1b"};
const KeyEvent commandV{KeyEventType::keyUp, 9, modifier::command | modifier::capsLock, "v"};
const KeyEvent plainV{KeyEventType::keyUp, 9, 0, "v"};
const KeyEvent f9{KeyEventType::keyUp, 101, modifier::function, {}};
const KeyEvent nothingNamed{KeyEventType::keyUp, 33, 0, {}};

constexpr HotkeyDecision none{};
constexpr HotkeyDecision paste{HotkeyAction::paste, false};
constexpr HotkeyDecision toggle{HotkeyAction::toggle, true};

class HotkeyDispatcherTest : public testing::Test {
protected:
    HotkeyDecision decide(const KeyEvent& event, bool visible = false) {
        return decideHotkey(event, visible, [this] { return ++asked, enabled; }, defaults);
    }

    FakeDefaults defaults;
    bool enabled = true;
    int asked = 0;
};

TEST_F(HotkeyDispatcherTest, ClosesWithEscapeAndReplaysOnlyWhenSomethingCloses) {
    defaults.put(settings::windowToggleEvent, "⇧ + ESC");
    EXPECT_EQ(decide(escape, true), (HotkeyDecision{HotkeyAction::close, true}));
    EXPECT_EQ(decide(escape, false), (HotkeyDecision{HotkeyAction::close, false}));
}

TEST_F(HotkeyDispatcherTest, PastesOnlyIntoAnEnabledApplicationWithTheOverlayClosedAndTheSettingOn) {
    defaults.put(settings::windowToggleEvent, "⌘ + ⇪ + V");
    EXPECT_EQ(decide(commandV), toggle) << "the setting is off while it is unset";
    defaults.put(settings::pasteClipboard, std::string("true"));
    EXPECT_EQ(decide(commandV), toggle) << "a text is no boolean";
    defaults.put(settings::pasteClipboard, true);
    EXPECT_EQ(decide(commandV), paste);
    EXPECT_EQ(decide(commandV, true), toggle);
    enabled = false;
    EXPECT_EQ(decide(commandV), toggle);
    asked = 0;
    EXPECT_EQ(decide(plainV), none);
    EXPECT_EQ(decide(f9), none);
    EXPECT_EQ(asked, 0) << "the enabled list is read, and maybe written, for the paste shortcut only";
}

TEST_F(HotkeyDispatcherTest, TogglesWithEitherHotkeyAsStoredNow) {
    EXPECT_EQ(decide(f9), none);
    defaults.put(settings::windowToggleSecondaryEvent, "F9");
    enabled = false;  // toggles do not ask who is in front
    EXPECT_EQ(decide(f9), toggle);
    EXPECT_EQ(decide(f9, true), toggle);
    EXPECT_EQ(decide(plainV), none);
    defaults.put(settings::windowToggleEvent, "V");
    EXPECT_EQ(decide(plainV), toggle);
    KeyEvent locked = f9;
    locked.flags |= modifier::capsLock;
    locked.heldFor = std::chrono::milliseconds(500);
    EXPECT_EQ(decide(locked), (HotkeyDecision{HotkeyAction::toggle, true, true}));
    EXPECT_EQ(decide(locked, true), toggle) << "nothing is left to have the keyboard";
    for (const char* unset : {"", " ", "v", "V ", "fn + F9"}) {
        defaults.put(settings::windowToggleEvent, unset);
        defaults.put(settings::windowToggleSecondaryEvent, unset);
        for (const auto& event : {f9, plainV, commandV, nothingNamed}) EXPECT_EQ(decide(event), none) << unset;
    }
    defaults.put(settings::windowToggleEvent, true);
    EXPECT_EQ(decide(f9), none);
}

TEST_F(HotkeyDispatcherTest, TrimsTheCameraKey) {
    EXPECT_EQ(actionCameraText(defaults), "");
    for (const auto& [stored, text] : {std::pair("  ", ""), std::pair("", ""), std::pair(" \n⌃ + F1\t", "⌃ + F1"),
                                       std::pair("\u2003F2\u00a0", "F2")}) {
        defaults.put(settings::actionCamToggleEvent, stored);
        EXPECT_EQ(actionCameraText(defaults), text);
    }
}

}  // namespace
}  // namespace vantor
