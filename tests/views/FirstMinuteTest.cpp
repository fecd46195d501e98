// Hotkeys in words, in the field and in its popup.

#include <gtest/gtest.h>

#include <QtWidgets/QLabel>
#include <algorithm>

#include "KitPlayer.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "input/view/HotkeyButton.h"

namespace vantor {
namespace {

TEST(FirstMinuteViews, HotkeysAreSpelledWhereKeyboardsHaveWords) {
    FakeDefaults defaults;
    FakeKeyMonitors monitors;
    defaults.put(settings::windowToggleEvent, std::string("⌃ + ⇧ + T"));
    for (const bool words : {true, false}) {
        HotkeyButton button(QStringLiteral("Window toggle"), settings::windowToggleEvent, {},
                            {defaults, monitors, [](WId, WindowNature) {}, [] { return QRect(0, 0, 800, 600); }, words},
                            nullptr);
        button.show();
        auto* const field = dynamic_cast<QAbstractButton*>(button.focusProxy());
        ASSERT_TRUE(field);
        EXPECT_EQ(field->toolTip(), words ? QStringLiteral("Ctrl + Shift + T") : QString());
        field->click();
        const auto popupSays = [&](const char* text) {
            const auto labels = below<QLabel>(*button.window());
            return std::ranges::any_of(labels, [&](const QLabel* each) { return each->text() == QLatin1String(text); });
        };
        EXPECT_EQ(popupSays("Ctrl + Shift + T"), words);
        EXPECT_EQ(popupSays("Press the keys that you want."), !words);
        (void)monitors.pressInVantor({KeyEventType::keyDown, 49, modifier::command, " "});
        EXPECT_EQ(popupSays("Super (Windows key) + Space"), words);
    }
}

}  // namespace
}  // namespace vantor
