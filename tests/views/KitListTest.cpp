// A picker's list and a field's menu as a player uses them: with arrows, letters and clicks; and how they go.

#include <gmock/gmock.h>

#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QWheelEvent>

#include "KitPlayer.h"
#include "ui/ControlState.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2TextField.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KitList : public testing::Test {
protected:
    GW2Picker& addPicker() {
        auto& picker = window.add(new GW2Picker(QStringLiteral("Engine"), &window));
        picker.setOptions(
            {{"wiki", QStringLiteral("Wiki")}, {"video", QStringLiteral("Videos")}, {"web", QStringLiteral("Web")}});
        picker.onChosen([this](const GW2PickerOption& option) { chosen.push_back(option.id); });
        return picker;
    }
    [[nodiscard]] ListPopup* openList() const {
        for (ListPopup* const list : below<ListPopup>(window))
            if (list->isVisible()) return list;
        ADD_FAILURE() << "no list is open";
        std::abort();
    }

    KitWindow window;
    std::vector<std::string> chosen;
};

TEST_F(KitList, ThePickerIsChosenFromByArrowsByAListAndByItsFirstLetter) {
    GW2Picker& picker = addPicker();
    window.open();
    picker.setFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Down);
    window.press(Qt::Key_Down);
    window.press(Qt::Key_Up);
    EXPECT_THAT(chosen, ElementsAre("wiki", "video", "wiki"));
    window.press(Qt::Key_Up);
    EXPECT_EQ(chosen.size(), 3U) << "the first one has none above";

    window.press(Qt::Key_Space, QStringLiteral(" "));
    ASSERT_TRUE(picker.isOpen());
    EXPECT_EQ(openList()->window(), &window) << "inside the window";
    window.press(Qt::Key_End);
    window.press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_EQ(picker.chosen(), "web");
    EXPECT_FALSE(picker.isOpen());
    EXPECT_TRUE(ControlState::of(picker).focused);

    window.press(Qt::Key_Return, QStringLiteral("\r"));
    window.type(QStringLiteral("v"));
    window.press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_EQ(picker.chosen(), "video");
}

TEST_F(KitList, EscapeClosesAnOpenListAndIsSeenByNobodyElse) {
    struct Listener : QObject {
        bool eventFilter(QObject* watched, QEvent* event) override {
            if (watched->isWindowType() && event->type() == QEvent::KeyPress) seen += "down ";
            if (watched->isWindowType() && event->type() == QEvent::KeyRelease) seen += "up ";
            return false;
        }
        std::string seen;
    } listener;
    QApplication::instance()->installEventFilter(&listener);
    GW2Picker& picker = addPicker();
    window.open();
    picker.setFocus(Qt::TabFocusReason);
    picker.open();
    window.down(Qt::Key_Escape);
    EXPECT_FALSE(picker.isOpen());
    EXPECT_EQ(QApplication::focusWidget(), &picker);
    window.up(Qt::Key_Escape);
    EXPECT_EQ(listener.seen, "");
    EXPECT_THAT(window.notTaken, IsEmpty());

    window.press(Qt::Key_Escape);
    EXPECT_EQ(listener.seen, "down up ") << "the next one is the window's";
    EXPECT_THAT(window.notTaken, ElementsAre(Qt::Key_Escape));
    EXPECT_FALSE(picker.chosen());
}

TEST_F(KitList, TheListGoesAtAPressOutsideWithoutAChoiceAndAtOneOnItsLineWithOne) {
    GW2Picker& picker = addPicker();
    auto& button = window.add(new GW2Button(QStringLiteral("Beside"), &window));
    static_cast<QBoxLayout*>(window.layout())->addStretch(1);
    int clicks = 0;
    QObject::connect(&button, &QAbstractButton::clicked, &button, [&clicks] { ++clicks; });
    window.open();
    window.click(picker);
    ASSERT_TRUE(picker.isOpen());
    window.click(picker);
    EXPECT_FALSE(picker.isOpen()) << "the picker itself closes it again";

    window.click(picker);
    window.click(window, QPoint(5, 5));
    EXPECT_FALSE(picker.isOpen());
    EXPECT_THAT(chosen, IsEmpty());
    window.click(picker);
    ASSERT_TRUE(picker.isOpen());
    window.click(*openList(), openList()->lineAt(1).center());
    EXPECT_THAT(chosen, ElementsAre("video"));
    EXPECT_EQ(clicks, 0) << "what lies below the list";
}

TEST_F(KitList, TheListGoesWithItsControlAndWhenThePageBelowItMoves) {
    GW2Picker* picker = &addPicker();
    auto* const field = &window.add(new GW2TextField(QStringLiteral("Field"), &window));
    window.open();
    picker->open();
    QWheelEvent wheel({5, 5}, window.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(window.windowHandle(), &wheel);
    EXPECT_FALSE(picker->isOpen());
    picker->open();
    picker->hide();
    EXPECT_FALSE(picker->isOpen());
    picker->show();
    KitWindow::settle();
    picker->open();
    delete picker;
    KitWindow::settle();
    EXPECT_THAT(below<ListPopup>(window), IsEmpty());
    QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(10, 10), field->mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(field, &menu);
    delete field;
    window.press(Qt::Key_Escape);
    KitWindow::settle();
    EXPECT_THAT(below<ListPopup>(window), IsEmpty());
}

TEST_F(KitList, ALongListStaysInsideItsWindowAndScrollsToTheCurrentLine) {
    GW2Picker& picker = addPicker();
    std::vector<GW2PickerOption> many;
    for (int i = 0; i < 60; ++i) many.push_back({std::to_string(i), QStringLiteral("Option %1").arg(i)});
    picker.setOptions(many);
    window.open();
    picker.setFocus(Qt::TabFocusReason);
    picker.open();
    EXPECT_TRUE(window.rect().contains(openList()->geometry()));
    window.press(Qt::Key_End);
    EXPECT_TRUE(openList()->rect().contains(openList()->lineAt(59)));
    window.press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_EQ(picker.chosen(), "59");
}

TEST_F(KitList, AFieldsMenuOffersWhatCanBeDoneAndDoesIt) {
    auto& field = window.add(new GW2TextField(QStringLiteral("Field"), &window));
    auto& secret = window.add(new GW2TextField(QStringLiteral("Secret"), &window));
    secret.setSecret(true);
    window.open();
    const auto menuOf = [this](QWidget& of) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(10, 10), of.mapToGlobal(QPoint(10, 10)));
        QApplication::sendEvent(&of, &event);
        KitWindow::settle();
        std::string offered;
        for (const auto& line : openList()->lines())
            if (line.enabled) offered += line.text.toStdString() + " ";
        return offered;
    };
    const auto take = [this](std::size_t line) {
        openList()->take(line);
        KitWindow::settle();
    };
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    field.setText(QStringLiteral("word"));
    field.setFocus();
    EXPECT_EQ(menuOf(field), "Paste Select all ");
    take(3);
    EXPECT_EQ(menuOf(field), "Cut Copy Paste Select all ");
    take(0);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("word"));
    (void)menuOf(field);
    take(2);
    EXPECT_EQ(field.text(), QStringLiteral("word"));
    secret.setText(QStringLiteral("hidden"));
    secret.selectAll();
    EXPECT_EQ(menuOf(secret), "Paste Select all ") << "a secret is not copied";
    for (QWidget* const top : QApplication::topLevelWidgets())
        EXPECT_TRUE(top == &window || !top->isVisible()) << "a window of the toolkit's own";
}

}  // namespace
}  // namespace vantor
