// Chat links, emotes and hotkey fields as the player presses them, with doubles on the far side of the seam.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QElapsedTimer>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <functional>
#include <memory>

#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakePasteboard.h"
#include "fake/FakePause.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeWorkspace.h"
#include "input/view/EmojiCommandsView.h"
#include "input/view/HotkeyButton.h"
#include "input/view/MsgButton.h"
#include "input/view/WaypointButton.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

void click(QWidget& target, Qt::KeyboardModifiers modifiers = {}) {
    const QPointF place = QRectF(target.rect()).center();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, place, target.mapToGlobal(place), Qt::LeftButton, held, modifiers);
        QApplication::sendEvent(&target, &event);
    }
}

bool comesTrue(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 10'000) return false;
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

class InputViewsTest : public testing::Test {
protected:
    InputViewsTest() {
        layout.keys = {{{0, 0}, "a"}, {{44, 0}, "/"}, {{1, 0}, "s"}, {{34, 0}, "i"}, {{17, 0}, "t"}};
        clipboardManager = std::make_unique<ClipboardManager>(layout, poster, monitors, workspace, pause);
    }
    // The keys that went down, in order.
    std::vector<KeyCode> typed() {
        std::vector<KeyCode> codes;
        for (const PostedKey& key : std::exchange(poster.posted, {}))
            if (key.down) codes.push_back(key.keyCode);
        return codes;
    }

    FakeKeyboardLayout layout;
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    FakePasteboard pasteboard;
    FakeDefaults defaults;
    FakeScheduler scheduler;
    FakeClock clock{1'000};
    std::unique_ptr<ClipboardManager> clipboardManager;
};

TEST_F(InputViewsTest, AWaypointCopiesOnAClickAndTypesOnAShiftClickThoughShiftWentDownInTheGame) {
    WaypointButton button(QStringLiteral("a"), {*clipboardManager, pasteboard, defaults}, scheduler, nullptr);
    EXPECT_EQ(button.toolTip().section(QLatin1Char('\n'), 0, 0), QStringLiteral("Copy to clipboard"));
    button.show();
    const int atRest = button.sizeHint().width();
    click(button);
    EXPECT_EQ(pasteboard.held, "a");
    EXPECT_THAT(typed(), ElementsAre());
    scheduler.advance(1s);
    EXPECT_EQ(button.btnText(), QStringLiteral("copied to clipboard    "));
    EXPECT_EQ(button.accessibleDescription(), QStringLiteral("copied to clipboard"));

    pasteboard.held = "the player's";
    click(button, Qt::ShiftModifier);
    EXPECT_THAT(typed(), ElementsAre(0));
    EXPECT_EQ(pasteboard.held, "the player's");
    EXPECT_EQ(button.btnText(), QStringLiteral("copied to clipboard    ")) << "a shown message is not begun again";
    scheduler.advance(5s);
    EXPECT_EQ(button.btnText(), QString());
    EXPECT_EQ(button.accessibleDescription(), QString());
    EXPECT_TRUE(comesTrue([&] { return button.sizeHint().width() == atRest; }));

    (void)monitors.pressInVantor({KeyEventType::flagsChanged, 56, modifier::shift, ""});
    QKeyEvent returnKey(QEvent::KeyPress, Qt::Key_Return, Qt::ShiftModifier);
    QApplication::sendEvent(&button, &returnKey);
    EXPECT_THAT(typed(), ElementsAre(0));
    scheduler.advance(1s);
    EXPECT_EQ(button.btnText(), QStringLiteral("typed in app    "));
    EXPECT_TRUE(comesTrue([&] { return button.sizeHint().width() > atRest + 40; }));
}

TEST_F(InputViewsTest, AMessageButtonActsEachTimeAndTellsItsMessageWhole) {
    int actions = 0;
    const QString message = QStringLiteral("thanks 🧑‍🚀");
    MsgButton button([&] { ++actions; }, message, QStringLiteral("Send"), scheduler, nullptr);
    click(button);
    click(button);
    EXPECT_EQ(actions, 2);
    scheduler.advance(139ms);
    EXPECT_EQ(button.btnText(), QStringLiteral("thanks "));
    scheduler.advance(1ms);
    EXPECT_EQ(button.btnText(), message) << "an emoji of several parts is one character";
    // Twelve characters: the eighth of them goes 1.24 s + 4 * 0.02 s after the press.
    scheduler.advance(1'179ms);
    EXPECT_EQ(button.btnText(), message);
    scheduler.advance(1ms);
    EXPECT_EQ(button.btnText(), QStringLiteral("thanks "));
}

class EmojiCommandsViewTest : public InputViewsTest {
protected:
    void make() {
        view = std::make_unique<EmojiCommandsView>(
            EmojiCommands(*clipboardManager, defaults, clock), defaults, [this](QSize size) { sizes.push_back(size); },
            nullptr);
        view->show();
    }
    // Those shown, from left to right.
    std::vector<QAbstractButton*> buttons() {
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        view->resize(view->sizeHint());
        view->layout()->activate();
        std::vector<QAbstractButton*> shown;
        for (auto* const each : view->findChildren<QAbstractButton*>())
            if (each->isVisible()) shown.push_back(each);
        std::sort(shown.begin(), shown.end(), [](auto* one, auto* other) { return one->x() < other->x(); });
        return shown;
    }
    void press(std::size_t place) { click(*buttons().at(place)); }

    std::unique_ptr<EmojiCommandsView> view;
    std::vector<QSize> sizes;
};

TEST_F(EmojiCommandsViewTest, IsThereOnlyWhileItIsEnabledAndAsksForTheRoomThatItFills) {
    make();
    EXPECT_TRUE(view->sizeHint().isEmpty());
    EXPECT_THAT(buttons(), ElementsAre());
    (void)defaults.setValue(settings::enableEmojiCommands, true);
    ASSERT_EQ(buttons().size(), 1U);
    EXPECT_EQ(sizes.back(), QSize(32, 32));
    EXPECT_EQ(buttons()[0]->text(), QStringLiteral("☺︎"));
    press(0);
    EXPECT_EQ(buttons().size(), 29U);
    EXPECT_EQ(buttons()[0]->text(), QStringLiteral("✕"));
    EXPECT_EQ(buttons()[7]->toolTip(), QStringLiteral("start dancing at next sync time (max 5s)"));
    EXPECT_EQ(buttons()[7]->accessibleName(), buttons()[7]->toolTip());
    for (const auto* const each : buttons()) {
        EXPECT_EQ(each->size(), QSize(30, 30));
        EXPECT_EQ(each->focusPolicy(), Qt::NoFocus);
    }
    const int right = buttons().back()->geometry().right();
    EXPECT_TRUE(right < sizes.back().width() && right > sizes.back().width() - 4) << right;
    (void)defaults.setValue(settings::enableEmojiCommands, false);
    EXPECT_TRUE(sizes.back().isEmpty());
    EXPECT_THAT(buttons(), ElementsAre());
}

TEST_F(EmojiCommandsViewTest, AnEmoteClosesTheRowIsTypedBetweenEntersAndIsTheFirstNextTime) {
    defaults.put(settings::enableEmojiCommands, true);
    make();
    press(0);
    press(20);  // sit
    EXPECT_FALSE(view->isOpen());
    EXPECT_EQ(sizes.back(), QSize(32, 32));
    EXPECT_THAT(typed(), ElementsAre(76, 44, 1, 34, 17, 76));
    make();
    EXPECT_FALSE(view->isOpen());
    press(0);
    EXPECT_EQ(buttons()[1]->toolTip(), QStringLiteral("sit"));
    EXPECT_EQ(buttons()[2]->toolTip(), QStringLiteral("bow"));
}

class HotkeyButtonTest : public InputViewsTest {
protected:
    HotkeyNeeds needs() {
        return {defaults, monitors, [this](WId, WindowNature nature) { natures.push_back(nature); },
                [] { return QRect(100, 100, 1000, 600); }};
    }
    static QAbstractButton* named(QWidget& parent, const QString& text) {
        const auto all = parent.findChildren<QAbstractButton*>();
        const auto found = std::find_if(all.begin(), all.end(), [&](auto* each) { return each->text() == text; });
        return found == all.end() ? nullptr : *found;
    }
    void pressKey(KeyCode code, const std::string& characters) {
        EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, code, 0, characters}), KeyMonitors::Passing::swallow);
    }
    std::optional<std::string> stored(std::string_view key) { return defaults.get<std::string>(key); }

    std::vector<WindowNature> natures;
};

TEST_F(HotkeyButtonTest, EachFieldRecordsItsOwnHotkeyAndOnlyAcceptStoresIt) {
    defaults.put(settings::windowToggleEvent, std::string("F5"));
    HotkeyButton button(QStringLiteral("Show or hide"), settings::windowToggleEvent,
                        settings::windowToggleSecondaryEvent, needs(), nullptr);
    button.show();
    const auto fields = button.findChildren<QAbstractButton*>();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[0]->text(), QStringLiteral("F5"));
    EXPECT_EQ(fields[1]->accessibleName(), QStringLiteral("Show or hide, second: not set"));

    fields[1]->click();
    ASSERT_TRUE(button.window());
    EXPECT_EQ(button.window()->geometry().center(), QRect(100, 100, 1000, 600).center());
    pressKey(4, "h");
    EXPECT_EQ(button.window()->shownText(), QStringLiteral("H"));
    named(*button.window(), QStringLiteral("Cancel"))->click();
    EXPECT_FALSE(button.window());
    EXPECT_EQ(defaults.writes(), 0);

    fields[1]->click();
    pressKey(5, "g");
    named(*button.window(), QStringLiteral("Accept"))->click();
    EXPECT_EQ(stored(settings::windowToggleSecondaryEvent), "G");
    EXPECT_EQ(fields[1]->text(), QStringLiteral("G")) << "the field follows the setting";

    fields[0]->click();
    EXPECT_EQ(button.window()->shownText(), QStringLiteral("F5"));
    named(*button.window(), QStringLiteral("Unbind"))->click();
    EXPECT_EQ(button.window()->shownText(), QString());
    named(*button.window(), QStringLiteral("Default"))->click();
    EXPECT_EQ(button.window()->shownText(), QStringLiteral("F5"));
    named(*button.window(), QStringLiteral("Unbind"))->click();
    named(*button.window(), QStringLiteral("Accept"))->click();
    EXPECT_EQ(stored(settings::windowToggleEvent), " ");
    EXPECT_THAT(natures, ElementsAre(WindowNature::popup, WindowNature::popup, WindowNature::raisedPopup));
    EXPECT_EQ(monitors.pressInVantor({KeyEventType::keyDown, 4, 0, "h"}), KeyMonitors::Passing::passOn);
}

TEST_F(HotkeyButtonTest, TheNewerOfTwoPopupsReplacesTheOlder) {
    HotkeyButton toggle(QStringLiteral("Toggle"), settings::windowToggleEvent, settings::windowToggleSecondaryEvent,
                        needs(), nullptr);
    HotkeyButton camera(QStringLiteral("Camera"), settings::actionCamToggleEvent, "", needs(), nullptr);
    const auto fields = toggle.findChildren<QAbstractButton*>();
    fields[0]->click();
    fields[1]->click();
    ASSERT_TRUE(toggle.window());
    camera.findChildren<QAbstractButton*>().at(0)->click();
    EXPECT_FALSE(toggle.window());
    ASSERT_TRUE(camera.window());
    pressKey(4, "h");
    EXPECT_EQ(camera.window()->shownText(), QStringLiteral("H"));
    // A window manager's way of closing is Cancel.
    camera.window()->close();
    EXPECT_FALSE(camera.window());
    EXPECT_EQ(defaults.writes(), 0);
}

}  // namespace
}  // namespace vantor
