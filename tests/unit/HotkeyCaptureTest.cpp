// The capture of a hotkey: what keys become, and when it is stored.

#include "input/HotkeyCapture.h"

#include <gtest/gtest.h>

#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"

namespace vantor {
namespace {

TEST(HotkeyCaptureTest, EveryKeyThatGoesDownInAWindowOfOursIsCapturedAndGoesNoFurther) {
    FakeDefaults defaults;
    FakeKeyMonitors monitors;
    defaults.put(settings::windowToggleEvent, std::string("⌃ + F5"));
    int changes = 0;
    bool hasKeyboard = true;
    {
        HotkeyCapture capture(
            defaults, settings::windowToggleEvent, monitors, [&] { return hasKeyboard; }, [&] { ++changes; });
        EXPECT_EQ(capture.newEvent(), "⌃ + F5");
        using namespace modifier;
        const struct {
            KeyEvent event;
            std::string text;
        } rows[] = {
            {{KeyEventType::keyDown, 122, function, ""}, "F1"},
            {{KeyEventType::keyDown, 53, 0, "\x1b"}, "ESC"},
            {{KeyEventType::keyDown, 33, shift, ""}, "ESC"},  // a dead key, or a key without a character
            {{KeyEventType::keyDown, 4, command | shift, "h"}, "⌘ + ⇧ + H"},
        };
        for (const auto& row : rows) {
            EXPECT_EQ(monitors.pressInVantor(row.event), KeyMonitors::Passing::swallow);
            EXPECT_EQ(capture.newEvent(), row.text);
        }
        // Modifiers alone, releases, and keys of the game are none of its business.
        EXPECT_EQ(monitors.pressInVantor({KeyEventType::flagsChanged, 56, shift, ""}), KeyMonitors::Passing::passOn);
        EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyUp, 4, 0, "h"}), KeyMonitors::Passing::passOn);
        monitors.pressInGame({KeyEventType::keyDown, 5, 0, "g"});
        EXPECT_EQ(capture.newEvent(), "⌘ + ⇧ + H");
        hasKeyboard = false;  // a field of the overlay has it
        EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 5, 0, "g"}), KeyMonitors::Passing::passOn);
        EXPECT_EQ(capture.newEvent(), "⌘ + ⇧ + H");
        EXPECT_EQ(changes, 3);
        EXPECT_EQ(defaults.writes(), 0);
    }
    // Cancelled: nothing is stored, and keys pass again.
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 4, 0, "h"}), KeyMonitors::Passing::passOn);
    EXPECT_EQ(defaults.get<std::string>(settings::windowToggleEvent), "⌃ + F5");
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
    using namespace modifier;
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

}  // namespace
}  // namespace vantor
