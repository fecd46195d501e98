// The overlay's windows: whoever cannot see them hears a name for everything that can be acted on, what a player
// presses leads on and says so, and at any text size nothing leaves its place.

#include <QtWidgets/QMenu>
#include <algorithm>

#include "Overlay.h"
#include "app/view/FloatWindow.h"
#include "app/view/IconMenu.h"
#include "app/view/IconWindow.h"
#include "app/view/SettingsView.h"
#include "data/SettingKeys.h"
#include "input/view/HotkeyPopup.h"
#include "ui/Collapse.h"
#include "ui/GW2Picker.h"
#include "ui/GW2TextArea.h"
#include "ui/TabMark.h"
#include "ui/Tabber.h"
#include "ui/TextBlock.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class KitWindows : public Overlay {};

TEST_F(KitWindows, EveryPageOfEveryWindowNamesWhatCanBeActedOn) {
    defaults.put(settings::windowToggleEvent, std::string("F5"));
    launch();
    int interactive = 0;
    const auto walkAll = [&](const std::string& place) {
        // What is closed at first is a part of its window too.
        for (Collapse* const collapse : below<Collapse>(mainWindow())) collapse->setExpanded(true);
        settle();
        for (QWidget* const window : shown()) {
            const AccessibilityWalk walk(*window);
            interactive += walk.interactive;
            for (const std::string& kind : walk.unnamed) ADD_FAILURE() << place << ": " << kind;
        }
    };
    int pages = 0;
    for (std::size_t tab = 0; tab < tabEntries.size(); ++tab) {
        open(tab);
        walkAll(std::string(tabEntries.at(tab).text));
        for (Tabber* const tabber : below<Tabber>(mainWindow()))
            for (int page = 0; tabber->isVisible() && page < tabber->count(); ++page, ++pages) {
                tabber->select(page);
                walkAll(tabber->tab(page).text().toStdString());
            }
    }
    EXPECT_GE(pages, 9) << "of the translators, the support and the settings";
    // The windows that open for a moment: the capture of a hotkey, the icon's menu, and a picker's list.
    press(open(tab_position::settings), "General");
    for (const char* const hotkey : {"Window toggle: F5", "Toggle action cam: not set"}) {
        press(mainWindow(), hotkey);
        EXPECT_GE(AccessibilityWalk(shownWindow<HotkeyPopup>()).interactive, 4);
        walkAll(hotkey);
        shownWindow<HotkeyPopup>().close();
        settle();
    }
    MenuEntry menu{MenuEntry::Kind::action, "More", true, {}, {}};
    menu.submenu.push_back({MenuEntry::Kind::action, "Below", true, {}, {}});
    IconMenu::open({menu}, {});
    EXPECT_TRUE(shownWindow<IconMenu>().isVisible());
    walkAll("menu");
    press(open(tab_position::support), "Bug");
    named<GW2Picker>(mainWindow(), "How bad it is").open();
    walkAll("picker");
    EXPECT_GT(interactive, 200);
    EXPECT_GE(shown().size(), 3U) << "the main window, the icon and the emotes";
}

TEST_F(KitWindows, TheMainWindowTellsItsTabItsHotkeyAndWhatIsWatched) {
    launch();
    MainWindow& window = mainWindow();
    window.activateWindow();  // as by a click on its background
    settle();
    EXPECT_FALSE(qobject_cast<QAbstractButton*>(QApplication::focusWidget())) << "a Space for the game would press it";
    EXPECT_THAT(heard(window), Contains(StartsWith("Vantor Home")));
    (void)defaults.setValue("general.windowToggleEvent", std::string("F9"));
    EXPECT_THAT(heard(window), Contains(HasSubstr("F9")));

    sendKey(named(window, "Home"), Qt::Key_Right);
    EXPECT_EQ(observer().tabs().selected(), 1);
    EXPECT_EQ(window.focusWidget(), &named(window, "Timers"));
    const QWidget& mark = *below<TabMark>(window).front();
    EXPECT_EQ(mark.x(), named(window, "Home").x()) << "the red line starts where it lay";
    (void)picture(window);
    EXPECT_EQ(mark.x(), named(window, "Timers").x());
    window.resize(window.width() + 200, window.height());
    settle();
    EXPECT_EQ(mark.x(), named(window, "Timers").x());
}

TEST_F(KitWindows, TheFirstStepsLeadEachToItsControlAndAreGoneOnceTheyAreDone) {
    served["events.json"] = "[" + sectionOf(1, {{QStringLiteral("Dragon"), {}}}, 15) + "]";
    launch();
    MainWindow& window = mainWindow();
    EXPECT_EQ(defaults.get<bool>(settings::explainedIcon), true) << "who has opened the overlay needs no more words";
    press(window, "An event to watch, to do");
    EXPECT_EQ(window.focusWidget(), &named(window, "Enter the key"));
    press(window, "Enter the key");
    EXPECT_EQ(window.focusWidget(), &named<QLineEdit>(window, "Insert API Key"));
    EXPECT_THAT(heard(window), Contains(StartsWith("During the creation of the key"))) << "and the help is open";
    open(tab_position::home);
    press(window, "Your hotkey, to do");
    (void)monitors.pressInVantor({KeyEventType::keyDown, 96, modifier::control, ""});
    EXPECT_THAT(heard(shownWindow<HotkeyPopup>()), Contains("Ctrl + F5"));
    press(shownWindow<HotkeyPopup>(), "Accept");
    EXPECT_EQ(named(window, "Window toggle: ⌃ + F5").toolTip(), QStringLiteral("Ctrl + F5"));

    press(open(tab_position::timers), "Show the times without progress");
    load();
    auto& eye = dynamic_cast<QAbstractButton&>(*window.focusWidget());
    EXPECT_THAT(heardOf(eye), StartsWith("Watch Dragon"));
    open(tab_position::home);
    EXPECT_THAT(heard(window), testing::IsSupersetOf({"Your key, to do", "Your hotkey, done"}));
    eye.click();
    settle();
    EXPECT_THAT(heard(window), Not(Contains(HasSubstr("to do")))) << "without a key it is over as well";
}

TEST_F(KitWindows, FormsAndTheTipSayWhatBecameOfAPress) {
    launch();
    MainWindow& window = open(tab_position::support);
    press(window, "Send");
    EXPECT_THAT(heard(window), Contains("An option must be selected."));
    sendKey(named<GW2Picker>(window, "How bad it is"), Qt::Key_Down);
    press(window, "Send");
    EXPECT_THAT(heard(window), Contains("Please describe thoroughly, the description is too short."));
    named<GW2TextArea>(window, "Describe it here").setPlainText(QStringLiteral("word ").repeated(40));
    press(window, "Send");
    ASSERT_TRUE(session.answerStatus(200));
    load();
    EXPECT_LT(named<TextBlock>(window, "Feedback sent successfully!").x(), 10) << "the empty line takes no room";
    press(window, "Appreciation");
    press(window, "Tip");
    press(window, "Copy wallet ID");
    EXPECT_EQ(pasteboard.held, "wallet");
    EXPECT_THAT(heard(window), Contains("wallet copied to clipboard"));
}

TEST_F(KitWindows, ATranslatorSpeaksAndDrawsWhatIsTypedInItsScript) {
    QFont::insertSubstitution(QStringLiteral("NewKrytan"), serifFont(1).family());
    launch();
    MainWindow& window = open(tab_position::translator);
    const std::string first = "A B C D E F G H I\nJ K L M N O P Q R\nS T U V W X Y Z 0\n1 2 3 4 5 6 7 8 9";
    const QImage script = picture(named<QWidget>(window, first));
    auto& field = named<QLineEdit>(window, "Custom text");
    fillIn(field, QStringLiteral("quaggan"));
    EXPECT_THAT(heard(window), Contains("q u a g g a n"));
    press(window, "Clear");
    EXPECT_THAT(heard(window), Contains(first));
    press(window, "Asura Script");
    EXPECT_THAT(heard(window), Contains(HasSubstr("is not here, so an ordinary one stands in")));
    EXPECT_NE(picture(named<QWidget>(window, first)), script) << "each in its own letters";
}

TEST_F(KitWindows, TheIconActsWhereTheButtonGoesUpOnItAndHasTheMenuOfTheStatusBar) {
    keychain.items[{"generic-password", "orvendel.Vantor.accounts"}] = R"({"amy_z":"1","R&D":"2"})";
    workspace.names["net.arena.Guild-Wars-2"] = "A & B";
    layout.keys = {{{0, 0}, "R"}};
    launch();
    QWidget& icon = shownWindow<IconWindow>();
    EXPECT_EQ(heardOf(icon), "Show or hide Vantor");
    for (const QPointF place : {QPointF(300, 300), QPointF(5, 5)}) {
        QMouseEvent down(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, {});
        QMouseEvent up(QEvent::MouseButtonRelease, place, place, Qt::LeftButton, Qt::NoButton, {});
        QApplication::sendEvent(&icon, &down);
        QApplication::sendEvent(&icon, &up);
        EXPECT_EQ(observer().visible(), place.x() > 100);
    }
    QMouseEvent right(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::RightButton, Qt::RightButton, {});
    const auto offers = [](const QMenu& menu) {
        std::vector<std::string> texts;
        for (const QAction* const action : menu.actions())
            texts.push_back(action->text().toStdString() + (action->isEnabled() ? "" : " (disabled)"));
        return texts;
    };
    QApplication::sendEvent(&icon, &right);
    const auto& menu = shownWindow<IconMenu>();
    EXPECT_THAT(offers(menu), ElementsAre("Disable on A && B", "Fill credentials", "", "Quit"));
    EXPECT_THAT(offers(*menu.actions().at(1)->menu()), ElementsAre("R&&D", "amy_z"));
    menu.actions().at(1)->menu()->actions().at(0)->trigger();
    EXPECT_THAT(typed(), IsEmpty()) << "the menu still has the keyboard";
    settle();
    EXPECT_THAT(typed(), Contains(0));
    shownWindow<IconMenu>().close();
    settle();
    keychain.items.clear();
    launch();
    QApplication::sendEvent(&shownWindow<IconWindow>(), &right);
    EXPECT_THAT(offers(*shownWindow<IconMenu>().actions().at(1)->menu()),
                ElementsAre("No accounts found, add new in settings (disabled)"));
}

TEST(KitOverlayWindow, IsPulledAtItsEdgesAndPreparedForEachNativeWindow) {
    struct Window final : OverlayWindow {
        using OverlayWindow::OverlayWindow;
        using QWidget::create;
        using QWidget::destroy;
    };
    std::vector<WId> prepared;
    Window window({.resizable = true}, [&](WId native) { prepared.push_back(native); });
    window.setMinimumSize(200, 100);
    window.orderFront();
    settle();
    const QRect before(100, 100, 400, 200);
    for (const auto& [grip, way, after] : {std::tuple(QPoint(5, 100), QPoint(250, 0), QRect(300, 100, 200, 200)),
                                           {QPoint(395, 195), QPoint(-50, -150), QRect(100, 100, 350, 100)},
                                           {QPoint(200, 5), QPoint(0, 150), QRect(100, 200, 400, 100)},
                                           {QPoint(200, 100), QPoint(40, 40), before}}) {
        window.place(before);
        for (const auto& [type, moved] : {std::pair(QEvent::MouseButtonPress, QPoint()),
                                          {QEvent::MouseMove, way},
                                          {QEvent::MouseButtonRelease, way}}) {
            const QPointF place = grip + moved;
            QMouseEvent event(type, place, place + before.topLeft(),
                              type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::LeftButton, {});
            QApplication::sendEvent(&window, &event);
        }
        EXPECT_EQ(window.geometry(), after) << "the smallest size holds, and the opposite edge stays";
    }
    window.destroy();
    window.create();
    EXPECT_EQ(prepared.size(), 2U);
    EXPECT_EQ(prepared.back(), window.winId());
}

TEST_F(KitWindows, TheListsFrameIsKeptByOneSideOnly) {
    for (const bool bySystem : {true, false}) {
        natures.keepsFrames = bySystem;
        natures.calls.clear();
        launch();
        const auto all = QApplication::topLevelWidgets();
        const auto list = std::ranges::find(all, QStringLiteral("Vantor watched events"), &QWidget::windowTitle);
        ASSERT_NE(list, all.end());

        natures.calls.clear();
        observer().iconPressed();
        EXPECT_TRUE(natures.calls.empty()) << "it holds nothing";
        dynamic_cast<FloatWindow&>(**list).fit({200, 100});
        EXPECT_EQ(natures.calls, (std::vector<std::string>{"keep WatchedEvents", "front"}));
        settle();
        settle();                 // what the first picture led to
        (*list)->move(100, 120);  // as a player drags it
        observer().iconPressed();
        EXPECT_EQ(defaults.get<std::string>("frame.WatchedEvents").has_value(), !bySystem);
        (*list)->move(300, 200);  // as a system restores it
        observer().iconPressed();
        EXPECT_EQ((*list)->pos(), bySystem ? QPoint(300, 200) : QPoint(100, 120));
    }
}

TEST_F(KitWindows, EveryTabKeepsItsControlsBetweenTheWindowsSidesAtAnyTextSize) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        setTextScale(scale);
        launch();
        MainWindow& window = mainWindow();
        for (const QSize wanted : {QSize(920, 600), QSize(720, 460)}) {
            const QSize size = wanted.expandedTo(window.minimumSize());
            window.resize(size);
            for (std::size_t tab = 0; tab < tabEntries.size(); ++tab) {
                open(tab);
                EXPECT_EQ(window.size(), size) << "no content may widen its window";
                for (QAbstractButton* const each : below<QAbstractButton>(window)) {
                    if (!each->isVisible()) continue;
                    // A column that scrolls may be taller than its window, but never wider.
                    const QRect place(each->mapTo(&window, QPoint()), each->size());
                    EXPECT_TRUE(place.left() >= 0 && place.right() < size.width())
                        << tabEntries.at(tab).text << ": " << heardOf(*each);
                }
            }
        }
    }
}

}  // namespace
}  // namespace vantor
