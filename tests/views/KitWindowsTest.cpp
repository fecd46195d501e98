// Every window as the program makes it, with doubles on the far side of the seam only: whoever cannot see it hears a
// name for everything that can be acted on, and at any text size nothing leaves its place.

#include <gmock/gmock.h>

#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <algorithm>

#include "AccessibilityWalk.h"
#include "KitPlayer.h"
#include "app/AppDelegate.h"
#include "app/view/FloatWindow.h"
#include "app/view/IconMenu.h"
#include "app/view/MainWindow.h"
#include "app/view/TabPositions.h"
#include "app/view/ViewWindows.h"
#include "browser/LazyWebPage.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeKeychain.h"
#include "fake/FakeMainThread.h"
#include "fake/FakePasteboard.h"
#include "fake/FakePause.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeScreens.h"
#include "fake/FakeStatusItem.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "fake/FakeWorkspace.h"
#include "input/view/HotkeyButton.h"
#include "ui/Collapse.h"
#include "ui/Fonts.h"
#include "ui/GW2Picker.h"
#include "ui/Tabber.h"

namespace vantor {
namespace {

// Records what is asked for the one window whose frame may be kept.
struct RecordedNature final : OverlayWindows {
    void prepare(NativeWindow, WindowNature) override {}
    bool keepFrame(NativeWindow window, const std::string& name) override {
        list = window;
        calls.push_back("keep " + name);
        return keepsFrames;
    }
    void orderFront(NativeWindow window) override {
        if (window == list) calls.emplace_back("front");
    }
    void takeFocus(NativeWindow) override {}

    bool keepsFrames = false;
    NativeWindow list = 0;
    std::vector<std::string> calls;
};

class KitWindows : public testing::Test {
protected:
    ~KitWindows() override { setTextScale(1); }

    void launch() {
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{
                {defaults,
                 session,
                 queue,
                 mainThread,
                 clock,
                 {"https://api", "qrc:/catalogue"},
                 [](const std::string&) {},
                 [](const std::string&) {}},
                monitors,
                poster,
                layout,
                workspace,
                statusItem,
                pasteboard,
                pause,
                scheduler,
                keychain,
                [this] {
                    auto made = std::make_unique<LazyWebPage>([] { return nullptr; });
                    webPage = made.get();
                    return made;
                },
                [] { return std::nullopt; },
                [this](AppWindowName name, AppObserver& observer) { return windows.make(name, observer); }},
            [] {});
        workspace.bringToFront("net.arena.Guild-Wars-2");
        observer().openOverlay();
        KitWindow::settle();
    }
    AppObserver& observer() { return delegate->appObserver(); }
    static std::vector<QWidget*> shown() {
        std::vector<QWidget*> found;
        for (QWidget* const each : QApplication::topLevelWidgets())
            if (each->isVisible()) found.push_back(each);
        return found;
    }
    static MainWindow& mainWindow() {
        for (QWidget* const each : shown())
            if (auto* const main = dynamic_cast<MainWindow*>(each)) return *main;
        ADD_FAILURE() << "the main window is not shown";
        std::abort();
    }
    // What is closed at first is a part of its window too.
    static void openCollapses(QWidget& window) {
        for (Collapse* const collapse : below<Collapse>(window)) collapse->setExpanded(true);
        KitWindow::settle();
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeClock clock{0, 0};
    FakeKeyMonitors monitors;
    FakeKeyPoster poster;
    FakeKeyboardLayout layout;
    FakeWorkspace workspace;
    FakeStatusItem statusItem;
    FakeKeychain keychain;
    FakePasteboard pasteboard;
    FakePause pause;
    FakeScreens screens;
    FakeScheduler scheduler;
    RecordedNature natures;
    LazyWebPage* webPage = nullptr;
    ViewWindows windows{{.overlayWindows = natures,
                         .screens = screens,
                         .scheduler = scheduler,
                         .webHosts = {"https://wiki", "https://videos", "https://search"},
                         .accountSite = "https://account",
                         .feedbackEndpoint = "https://feedback/api/message",
                         .supportData = {"Somebody.1234", {{"xmr", "Coin", "wallet", "memo"}}, "https://licence"},
                         .webPage = [this] { return PageSource{*webPage, [] { return nullptr; }}; },
                         .translator = [] { return TranslatorNeeds{[](const Script&) { return true; }, {}}; },
                         .examineSystem =
                             [] {
                                 return std::vector<SystemCapability>{
                                     plainCapability({CapabilityKind::keyring, false, "Install one"})};
                             },
                         .openLink = [](const std::string&) {},
                         .menuEntries = [] { return std::vector<MenuEntry>(); }}};
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(KitWindows, EveryPageOfEveryWindowNamesWhatCanBeActedOn) {
    launch();
    int interactive = 0;
    const auto walkAll = [&](const std::string& place) {
        KitWindow::settle();
        openCollapses(mainWindow());
        for (QWidget* const window : shown()) {
            const AccessibilityWalk walk = walkAccessibility(*window);
            interactive += walk.interactive;
            for (const QString& path : walk.unnamed) ADD_FAILURE() << place << ": " << path.toStdString();
        }
    };
    int pages = 0;
    for (std::size_t tab = 0; tab < tabEntries.size(); ++tab) {
        const std::string name(tabEntries.at(tab).text);
        observer().tabs().select(tab);
        walkAll(name);
        for (Tabber* const tabber : below<Tabber>(mainWindow()))
            for (int page = 0; tabber->isVisible() && page < tabber->count(); ++page, ++pages) {
                tabber->select(page);
                walkAll(name + ", " + tabber->tab(page).text().toStdString());
            }
    }
    // The windows that open for a moment: the capture of a hotkey, the icon's menu, and a picker's list.
    observer().tabs().select(tabEntries.size() - 1);
    KitWindow::settle();
    int captures = 0;
    for (HotkeyButton* const hotkey : below<HotkeyButton>(mainWindow())) {
        for (QAbstractButton* const field : below<QAbstractButton>(*hotkey)) {
            field->click();
            walkAll("capture");
            ASSERT_TRUE(hotkey->window());
            const auto buttons = below<QAbstractButton>(*hotkey->window());
            captures += static_cast<int>(walkAccessibility(*hotkey->window()).interactive);
            ASSERT_FALSE(buttons.empty());
            hotkey->window()->close();
            KitWindow::settle();
        }
    }
    EXPECT_GE(captures, 4) << "of two hotkeys and more, to accept and to cancel each";
    const std::size_t before = shown().size();
    MenuEntry menu{MenuEntry::Kind::action, "More", true, {}, {}};
    menu.submenu.push_back({MenuEntry::Kind::action, "Below", true, {}, {}});
    IconMenu::open({menu}, {});
    EXPECT_EQ(shown().size(), before + 1);
    walkAll("menu");
    for (GW2Picker* const picker : below<GW2Picker>(mainWindow()))
        if (picker->isVisible()) {
            picker->open();
            walkAll("picker");
        }
    EXPECT_GE(pages, 9) << "of the translators, the support and the settings";
    EXPECT_GT(interactive, 200);
    EXPECT_GE(shown().size(), 3U) << "the main window, the icon and the emotes";
}

// What a player presses in the window, and what the window then says.
TEST_F(KitWindows, TheMainWindowLeadsToWhatHelpsAndSaysSo) {
    launch();
    MainWindow& window = mainWindow();
    EXPECT_FALSE(qobject_cast<QAbstractButton*>(window.focusWidget())) << "a Space for the game would press it";
    const auto isSaid = [&](const char* words) {
        KitWindow::settle();
        return std::ranges::any_of(window.findChildren<QWidget*>(), [&](const QWidget* each) {
            const auto* const label = qobject_cast<const QLabel*>(each);
            return each->isVisible() && ((label && label->text() == QLatin1String(words)) ||
                                         each->accessibleName().startsWith(QLatin1String(words)));
        });
    };
    const auto press = [&](const char* name) {
        KitWindow::settle();
        for (auto* const each : window.findChildren<QAbstractButton*>())
            if (each->isVisible() &&
                (each->text() == QLatin1String(name) || each->accessibleName() == QLatin1String(name)))
                return each->click();
        ADD_FAILURE() << "no button " << name;
    };
    EXPECT_TRUE(isSaid("Vantor Home"));
    (void)defaults.setValue("general.windowToggleEvent", std::string("F9"));
    EXPECT_TRUE(std::ranges::any_of(window.findChildren<QWidget*>(), [](const QWidget* each) {
        return each->accessibleName().contains(QLatin1String("F9"));
    })) << "the title tells the new hotkey";

    observer().tabs().select(tab_position::settings);
    press("Timers");
    observer().tabs().select(tab_position::timers);
    press("Enter the key");
    EXPECT_TRUE(isSaid("API Key")) << "the page with the key's field";

    observer().tabs().select(tab_position::translator);
    EXPECT_TRUE(isSaid("A B C D E F G H I"));
    observer().tabs().select(tab_position::support);
    press("Send");
    EXPECT_TRUE(isSaid("An option must be selected."));
    for (GW2Picker* const picker : below<GW2Picker>(window)) {
        picker->setFocus(Qt::TabFocusReason);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QApplication::sendEvent(picker, &down);
    }
    press("Send");
    EXPECT_TRUE(isSaid("Please describe thoroughly, the description is too short."));
    press("Appreciation");
    press("Tip");
    press("Copy wallet ID");
    EXPECT_EQ(pasteboard.held, "wallet");
    EXPECT_TRUE(isSaid("wallet copied to clipboard"));

    // The icon acts where the button goes up on it.
    for (QWidget* const each : shown()) {
        if (each->accessibleName() != QStringLiteral("Show or hide Vantor")) continue;
        for (const QPointF place : {QPointF(300, 300), QPointF(5, 5)}) {
            QMouseEvent down(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                             {});
            QMouseEvent up(QEvent::MouseButtonRelease, place, place, Qt::LeftButton, Qt::NoButton, {});
            QApplication::sendEvent(each, &down);
            QApplication::sendEvent(each, &up);
            EXPECT_EQ(observer().visible(), place.x() > 100);
        }
        return;
    }
    ADD_FAILURE() << "no icon";
}

class KitWindowsWhoseFrames : public KitWindows, public testing::WithParamInterface<bool> {};

TEST_P(KitWindowsWhoseFrames, AreKeptByOneSideOnly) {
    const bool bySystem = GetParam();
    natures.keepsFrames = bySystem;
    launch();
    const auto all = QApplication::topLevelWidgets();
    const auto list = std::ranges::find(all, QStringLiteral("Vantor watched events"), &QWidget::windowTitle);
    ASSERT_NE(list, all.end());

    natures.calls.clear();
    observer().iconPressed();
    EXPECT_TRUE(natures.calls.empty()) << "it holds nothing";
    dynamic_cast<FloatWindow&>(**list).fit({200, 100});
    EXPECT_EQ(natures.calls, (std::vector<std::string>{"keep WatchedEvents", "front"}));
    KitWindow::settle();
    KitWindow::settle();      // what the first picture led to
    (*list)->move(100, 120);  // as a player drags it
    observer().iconPressed();
    EXPECT_EQ(defaults.get<std::string>("frame.WatchedEvents").has_value(), !bySystem);
    (*list)->move(300, 200);  // as a system restores it
    observer().iconPressed();
    EXPECT_EQ((*list)->pos(), bySystem ? QPoint(300, 200) : QPoint(100, 120));
}

INSTANTIATE_TEST_SUITE_P(Keepers, KitWindowsWhoseFrames, testing::Values(false, true));

class KitWindowsAtTextScale : public KitWindows, public testing::WithParamInterface<double> {};

TEST_P(KitWindowsAtTextScale, EveryTabKeepsItsControlsBetweenTheWindowsSides) {
    setTextScale(GetParam());
    launch();
    MainWindow& window = mainWindow();
    for (const QSize wanted : {QSize(920, 600), QSize(720, 460)}) {
        const QSize size = wanted.expandedTo(window.minimumSize());
        window.resize(size);
        for (std::size_t tab = 0; tab < tabEntries.size(); ++tab) {
            observer().tabs().select(tab);
            KitWindow::settle();
            EXPECT_EQ(window.size(), size) << "no content may widen its window";
            for (const QAbstractButton* const each : below<QAbstractButton>(window)) {
                if (!each->isVisible()) continue;
                // A column that scrolls may be taller than its window, but never wider.
                const QRect place(each->mapTo(&window, QPoint()), each->size());
                EXPECT_TRUE(place.left() >= 0 && place.right() < size.width())
                    << tabEntries.at(tab).text << ": " << each->text().toStdString() << " "
                    << each->accessibleName().toStdString();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, KitWindowsAtTextScale, testing::Values(1.0, 1.5, 2.0));

}  // namespace
}  // namespace vantor
