// Chat links, emotes and hotkey fields as the player presses them, in the real overlay.

#include <algorithm>

#include "Overlay.h"
#include "data/SettingKeys.h"
#include "input/view/EmojiCommandsView.h"
#include "input/view/HotkeyPopup.h"
#include "input/view/MsgButton.h"
#include "input/view/WaypointButton.h"
#include "ui/TextBlock.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class InputViewsTest : public Overlay {
protected:
    void SetUp() override {
        layout.keys = {{{0, 0}, "a"}, {{44, 0}, "/"}, {{1, 0}, "s"}, {{34, 0}, "i"}, {{17, 0}, "t"}};
        launch();
    }
};

TEST_F(InputViewsTest, AWaypointCopiesOnAClickAndTypesOnAShiftClickThoughShiftWentDownInTheGame) {
    WaypointButton button(QStringLiteral("a"), {observer().clipboardManager(), pasteboard, defaults}, scheduler,
                          nullptr);
    EXPECT_EQ(button.toolTip().section(QLatin1Char('\n'), 0, 0), QStringLiteral("Copy to clipboard"));
    button.show();
    const int atRest = button.sizeHint().width();
    click(button);
    EXPECT_EQ(pasteboard.held, "a");
    EXPECT_THAT(typed(), ElementsAre());
    scheduler.advance(1s);
    EXPECT_EQ(button.btnText(), QStringLiteral("copied to clipboard    "));
    EXPECT_EQ(heardOf(button, QAccessible::Description), "copied to clipboard");

    pasteboard.held = "the player's";
    click(button, Qt::ShiftModifier);
    EXPECT_THAT(typed(), ElementsAre(0));
    EXPECT_EQ(pasteboard.held, "the player's");
    EXPECT_EQ(button.btnText(), QStringLiteral("copied to clipboard    ")) << "a shown message is not begun again";
    scheduler.advance(5s);
    EXPECT_EQ(button.accessibleDescription(), QString());
    EXPECT_TRUE(comesTrue([&] { return button.sizeHint().width() == atRest; }));

    (void)monitors.pressInVantor({KeyEventType::flagsChanged, 56, modifier::shift, ""});
    sendKey(button, Qt::Key_Return, {}, Qt::ShiftModifier);
    EXPECT_THAT(typed(), ElementsAre(0));
    scheduler.advance(1s);
    EXPECT_EQ(button.btnText(), QStringLiteral("typed in app    "));
    EXPECT_TRUE(comesTrue([&] { return button.sizeHint().width() > atRest + 40; }));
}

TEST_F(InputViewsTest, AMessageButtonActsEachTimeAndTellsItsMessage) {
    int actions = 0;
    MsgButton button([&] { ++actions; }, QStringLiteral("thanks"), QStringLiteral("Send"), scheduler, nullptr);
    for (int clicks = 0; clicks < 2; ++clicks) click(button);
    scheduler.advance(1s);
    EXPECT_EQ(actions, 2);
    EXPECT_EQ(heardOf(button, QAccessible::Description), "thanks");
}

class EmojiCommandsViewTest : public InputViewsTest {
protected:
    // The window, and its buttons from left to right.
    static QWidget& window() {
        for (QWidget* const each : QApplication::topLevelWidgets())
            if (each->windowTitle() == QLatin1String("Vantor emotes")) return *each;
        throw std::runtime_error("there are no emotes");
    }
    static std::vector<QAbstractButton*> buttons() {
        settle();
        std::vector<QAbstractButton*> all = below<QAbstractButton>(window());
        std::erase_if(all, [](const auto* each) { return !each->isVisible(); });
        std::ranges::sort(all, {}, [](const auto* each) { return each->x(); });
        return all;
    }
};

TEST_F(EmojiCommandsViewTest, AreThereOnlyWhileEnabledInAWindowThatTheyFillAtItsFixedPlace) {
    const QPoint corner(36, 0);  // beside the icon
    EXPECT_FALSE(window().isVisible());
    (void)defaults.setValue(settings::enableEmojiCommands, true);
    ASSERT_EQ(buttons().size(), 1U);
    EXPECT_EQ(window().geometry(), QRect(corner, QSize(32, 32)));
    EXPECT_EQ(buttons()[0]->text(), QStringLiteral("☺︎"));
    press(window(), "Open the emotes");
    ASSERT_EQ(buttons().size(), 29U);
    EXPECT_EQ(buttons()[0]->text(), QStringLiteral("✕"));
    EXPECT_EQ(heardOf(*buttons()[7]), "start dancing at next sync time (max 5s)");
    for (const auto* const each : buttons()) {
        EXPECT_EQ(each->size(), QSize(30, 30));
        EXPECT_EQ(each->focusPolicy(), Qt::NoFocus);
    }
    const int right = buttons().back()->geometry().right();
    EXPECT_TRUE(right < window().width() && right > window().width() - 4) << right;
    EXPECT_EQ(window().pos(), corner) << "the pointer is on what has just opened it";
    (void)defaults.setValue(settings::enableEmojiCommands, false);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(EmojiCommandsViewTest, AnEmoteClosesTheRowIsTypedBetweenEntersAndIsTheFirstNextTime) {
    (void)defaults.setValue(settings::enableEmojiCommands, true);
    press(window(), "Open the emotes");
    press(window(), "sit");
    EXPECT_EQ(window().width(), 32);
    EXPECT_THAT(typed(), ElementsAre(76, 44, 1, 34, 17, 76));
    launch();
    EXPECT_EQ(buttons().size(), 1U);
    press(window(), "Open the emotes");
    EXPECT_EQ(heardOf(*buttons()[1]), "sit");
    EXPECT_EQ(heardOf(*buttons()[2]), "bow");
}

class HotkeyButtonTest : public InputViewsTest {
protected:
    void SetUp() override {
        defaults.put(settings::windowToggleEvent, std::string("F5"));
        InputViewsTest::SetUp();
        open(tab_position::settings);
    }
    static HotkeyPopup& popup() { return shownWindow<HotkeyPopup>(); }
    void pressKey(KeyCode code, const std::string& characters) {
        QApplication::processEvents();  // the popup gets the keyboard
        EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, code, 0, characters}), KeyMonitors::Passing::swallow);
    }
};

TEST_F(HotkeyButtonTest, EachFieldRecordsItsOwnHotkeyAndOnlyAcceptStoresIt) {
    MainWindow& window = mainWindow();
    natures.natures.clear();
    const int before = defaults.writes();
    press(window, "Window toggle, second: not set");
    EXPECT_EQ(popup().geometry().center(), QRect(0, 0, 1360, 820).center()) << "of the game's screen";
    const QImage empty = picture(popup());
    pressKey(4, "h");
    EXPECT_EQ(popup().shownText(), QStringLiteral("H"));
    EXPECT_NE(picture(popup()), empty);
    press(popup(), "Cancel");
    EXPECT_EQ(defaults.writes(), before);

    press(window, "Window toggle, second: not set");
    pressKey(5, "g");
    press(popup(), "Accept");
    EXPECT_EQ(defaults.get<std::string>(settings::windowToggleSecondaryEvent), "G");
    press(window, "Window toggle, second: G");
    press(popup(), "Cancel");

    press(window, "Window toggle: F5");
    EXPECT_EQ(popup().shownText(), QStringLiteral("F5"));
    press(popup(), "Unbind");
    EXPECT_EQ(popup().shownText(), QString());
    press(popup(), "Default");
    EXPECT_EQ(popup().shownText(), QStringLiteral("F5"));
    press(popup(), "Unbind");
    named(popup(), "Accept").click();
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 4, 0, "h"}), KeyMonitors::Passing::passOn) << "at once";
    settle();
    EXPECT_EQ(defaults.get<std::string>(settings::windowToggleEvent), " ");
    const auto usual = WindowNature::popup;
    EXPECT_THAT(natures.natures, ElementsAre(usual, usual, usual, WindowNature::raisedPopup));
}

TEST_F(HotkeyButtonTest, TheNewerOfTwoPopupsReplacesTheOlder) {
    const int before = defaults.writes();
    for (const char* const field :
         {"Window toggle: F5", "Window toggle, second: not set", "Toggle action cam: not set"})
        press(mainWindow(), field);
    EXPECT_EQ(std::ranges::count_if(shown(), [](auto* each) { return dynamic_cast<HotkeyPopup*>(each) != nullptr; }),
              1);
    pressKey(4, "h");
    EXPECT_EQ(popup().shownText(), QStringLiteral("H"));
    EXPECT_EQ(heardOf(*below<TextBlock>(popup()).at(0)), "Assign inputs to: Toggle action cam");
    // A window manager's way of closing is Cancel.
    popup().close();
    EXPECT_EQ(defaults.writes(), before);
}

}  // namespace
}  // namespace vantor
