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
    {
        HotkeyCapture capture(defaults, settings::windowToggleEvent, monitors, [&] { ++changes; });
        EXPECT_EQ(capture.newEvent(), "⌃ + F5");
        using namespace modifier;
        const struct {
            KeyEvent event;
            std::string text;
        } rows[] = {
            {{KeyEventType::keyDown, 122, function, ""}, "F1"},
            {{KeyEventType::keyDown, 53, 0, "\x1b"}, "ESC"},
            {{KeyEventType::keyDown, 33, 0, ""}, ""},  // a dead key, or a key without a character
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
        EXPECT_EQ(changes, 4);
        EXPECT_EQ(defaults.writes(), 0);
    }
    // Cancelled: nothing is stored, and keys pass again.
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 4, 0, "h"}), KeyMonitors::Passing::passOn);
    EXPECT_EQ(defaults.get<std::string>(settings::windowToggleEvent), "⌃ + F5");
}

}  // namespace
}  // namespace vantor
