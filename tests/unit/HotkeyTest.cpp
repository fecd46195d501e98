// Hotkeys: the readable text of a key, which is their stored form, its capture, and what a released key asks for.

#include <gtest/gtest.h>

#include <set>

#include "app/HotkeyDispatcher.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "input/HotkeyCapture.h"
#include "input/KeyNames.h"
#include "input/PcKeyWords.h"
#include "input/ReadableKeyText.h"

namespace vantor {
namespace {

using namespace modifier;

KeyEvent key(KeyCode code, ModifierFlags flags, std::string characters = {}) {
    return {KeyEventType::keyUp, code, flags, std::move(characters)};
}

TEST(ReadableKeyText, JoinsTheModifiersInTheStoredOrderAndNamesTheKey) {
    const std::pair<KeyEvent, const char*> rows[] = {
        {key(4, command | shift, "h"), "⌘ + ⇧ + H"},
        {key(96, control | function), "⌃ + F5"},
        {key(124, shift | function), "⇧ + →"},
        {key(4, function, "h"), "fn + H"},
        {key(87, numericPad, "5"), "numpad 5"},
        {key(71, numericPad, ""), "numpad 🅇"},
        {key(36, 0, "\r"), "↩︎"},
        {key(76, numericPad, "\r"), "numpad ↩︎"},
        {key(49, 0, " "), "␣"},
        {key(51, option, "\b"), "⌥ + ⌫"},
        {key(53, capsLock, "\x1b"), "⇪ + ESC"},
        {key(0, nonCoalesced | command | control | function | capsLock | option | shift | numericPad, "a"),
         "⌘ + ⌃ + fn + ⇪ + ⌥ + ⇧ + numpad A"},
        {key(27, 0, "ß"), "SS"},
        {key(0, 0, "ф"), "Ф"},
        {key(33, shift), "⇧ + "},  // a dead key has no characters
        {key(56, 0, "x"), "X"},    // the names of modifier keys are for playing back only
    };
    for (const auto& [event, text] : rows) EXPECT_EQ(readableKeyText(event), text);
}

TEST(PcKeyWords, SpellAStoredHotkey) {
    const std::pair<const char*, const char*> rows[] = {{"⌃ + ⇧ + T", "Ctrl + Shift + T"},
                                                        {"⌘ + V", "Super (Windows key) + V"},
                                                        {"⌃ + ⌥ + +", "Ctrl + Alt + +"},
                                                        {"fn + ⇪ + A", "Fn + Caps Lock + A"},
                                                        {"numpad ↩︎", "Numpad Enter"},
                                                        {"⇧ + →", "Shift + Right"},
                                                        {"\t", "Tab"},
                                                        {"⇧", "⇧"},
                                                        {" ", ""}};
    for (const auto& [stored, words] : rows) EXPECT_EQ(pcKeyWords(stored), words);
}

TEST(KeyNames, AreUniqueSoThatAStoredHotkeyPlaysBackAsItsKey) {
    std::set<std::string_view> names;
    std::set<KeyCode> codes;
    for (const auto& [name, code] : readableKeyNames) {
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_TRUE(codes.insert(code).second) << code;
        EXPECT_EQ(keyCodeNamed(name), code);
    }
    EXPECT_EQ(keyCodeNamed("F19"), 80);
    EXPECT_EQ(keyCodeNamed("↩︎"), 76);
    EXPECT_EQ(keyCodeNamed("\u21A9"), std::nullopt) << "the name carries the text-presentation selector";
    for (const auto* absent : {"⌘", "⇪", "fn", "", "f1", "numpad 5"}) EXPECT_EQ(keyCodeNamed(absent), std::nullopt);
}

TEST(HotkeyCaptureTest, EveryKeyThatGoesDownInAWindowOfOursIsCapturedAndGoesNoFurther) {
    using Passing = KeyMonitors::Passing;
    FakeDefaults defaults;
    FakeKeyMonitors monitors;
    defaults.put(settings::windowToggleEvent, std::string("⌃ + F5"));
    int changes = 0;
    bool hasKeyboard = true;
    auto capture = std::make_optional<HotkeyCapture>(
        defaults, settings::windowToggleEvent, monitors, [&] { return hasKeyboard; }, [&] { ++changes; });
    EXPECT_EQ(capture->newEvent(), "⌃ + F5");
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 53, 0, "\x1b"}), Passing::swallow);
    EXPECT_EQ(capture->newEvent(), "ESC");
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 4, command | shift, "h"}), Passing::swallow);
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 33, shift, ""}), Passing::swallow) << "it has no name";
    hasKeyboard = false;  // a field of the overlay has it
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 5, 0, "g"}), Passing::passOn);
    hasKeyboard = true;
    // Modifiers alone, releases, and keys of the game are none of its business.
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::flagsChanged, 56, shift, ""}), Passing::passOn);
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyUp, 4, 0, "h"}), Passing::passOn);
    monitors.pressInGame({KeyEventType::keyDown, 5, 0, "g"});
    EXPECT_EQ(capture->newEvent(), "⌘ + ⇧ + H");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(defaults.get<std::string>(settings::windowToggleEvent), "⌃ + F5") << "stored before it is accepted";
    capture->accept();
    EXPECT_EQ(defaults.get<std::string>(settings::windowToggleEvent), "⌘ + ⇧ + H");
    capture.reset();
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 4, 0, "h"}), Passing::passOn);
}

TEST(HotkeyCaptureTest, WarnsOfWhatANewKeyMeans) {
    FakeDefaults defaults;
    FakeKeyMonitors monitors;
    defaults.put(settings::windowToggleEvent, std::string("F9"));
    defaults.put(settings::windowToggleSecondaryEvent, std::string());
    defaults.put(settings::actionCamToggleEvent, std::string("⌃ + H"));
    const auto warns = [&](std::string_view key, const KeyEvent& event) {
        HotkeyCapture capture(defaults, key, monitors, [] { return true; }, [] {});
        (void)monitors.pressInVantor(event);
        return capture.warning().substr(0, 10);
    };
    const KeyEvent h{KeyEventType::keyDown, 4, 0, "h"};
    const KeyEvent controlH{KeyEventType::keyDown, 4, control, "h"};
    const KeyEvent keypad{KeyEventType::keyDown, 87, numericPad, "5"};
    const KeyEvent f9{KeyEventType::keyDown, 101, function, ""};
    EXPECT_EQ(warns(settings::windowToggleEvent, f9), "");
    EXPECT_EQ(warns(settings::windowToggleEvent, h), "Typed in t");
    EXPECT_EQ(warns(settings::windowToggleEvent, keypad), "Typed in t");
    EXPECT_EQ(warns(settings::windowToggleSecondaryEvent, controlH), "The camera");
    EXPECT_EQ(warns(settings::actionCamToggleEvent, f9), "The camera");
    EXPECT_EQ(warns(settings::actionCamToggleEvent, h), "");
    EXPECT_EQ(warns(settings::actionCamToggleEvent, keypad), "Vantor can");
    EXPECT_EQ(warns(settings::actionCamToggleEvent, {KeyEventType::keyDown, 4, command, "h"}), "Vantor can");
    EXPECT_EQ(storedHotkey(defaults, settings::windowToggleSecondaryEvent), unsetHotkey);
}

const KeyEvent escape = key(53, shift, "\x1b");
const KeyEvent commandV = key(9, command | capsLock, "v");
const KeyEvent plainV = key(9, 0, "v");
const KeyEvent f9 = key(101, function);

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

TEST_F(HotkeyDispatcherTest, ClosesWithEscapeAndTogglesWithEitherHotkeyAsStoredNow) {
    enabled = false;  // neither asks who is in front
    EXPECT_EQ(decide(f9), none);
    defaults.put(settings::windowToggleSecondaryEvent, "F9");
    EXPECT_EQ(decide(f9), toggle);
    EXPECT_EQ(decide(f9, true), toggle);
    EXPECT_EQ(decide(plainV), none);
    defaults.put(settings::windowToggleEvent, "V");
    EXPECT_EQ(decide(plainV), toggle);
    defaults.put(settings::windowToggleEvent, "⇧ + ESC");
    // The camera key is replayed only where something closes.
    for (const bool visible : {true, false})
        EXPECT_EQ(decide(escape, visible), (HotkeyDecision{HotkeyAction::close, visible}));
    KeyEvent locked = f9;
    locked.flags |= capsLock;
    locked.heldFor = std::chrono::milliseconds(500);
    EXPECT_EQ(decide(locked), (HotkeyDecision{HotkeyAction::toggle, true, true}));
    EXPECT_EQ(decide(locked, true), toggle) << "nothing is left to have the keyboard";
    for (const char* unset : {"", " ", "v", "V ", "fn + F9"}) {
        defaults.put(settings::windowToggleEvent, unset);
        defaults.put(settings::windowToggleSecondaryEvent, unset);
        for (const auto& event : {f9, plainV, commandV, key(33, 0)}) EXPECT_EQ(decide(event), none) << unset;
    }
}

TEST_F(HotkeyDispatcherTest, TrimsTheCameraKey) {
    EXPECT_EQ(actionCameraText(defaults), "");
    for (const auto& [stored, text] :
         {std::pair("  ", ""), std::pair(" \n⌃ + F1\t", "⌃ + F1"), std::pair("\u2003F2\u00a0", "F2")}) {
        defaults.put(settings::actionCamToggleEvent, stored);
        EXPECT_EQ(actionCameraText(defaults), text);
    }
}

}  // namespace
}  // namespace vantor
