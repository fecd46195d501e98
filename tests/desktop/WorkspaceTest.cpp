// The frontmost application, the way back to it, and windows that take no focus: a real X server, a real window
// manager, the stand-in game as the other process, real toolkit windows as our own. Runs in demo/private_desktop.sh.

#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>

#include "Desktop.h"
#include "app/SystemCapability.h"
#include "app/cli/DoctorCommand.h"
#include "platform/linux/services/Doctor.h"
#include "ui/OverlayWindow.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

const QStringList notesArguments = {QStringLiteral("--class"), QStringLiteral("notes"), QStringLiteral("--size"),
                                    QStringLiteral("300x200")};

class WorkspaceTest : public testing::Test, protected Desktop {
protected:
    class ClickCounter : public QWidget {
    public:
        // As Vantor's own windows are made.
        explicit ClickCounter(int& clicks)
            : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), clicks_(clicks) {}

    protected:
        void mousePressEvent(QMouseEvent*) override { ++clicks_; }

    private:
        int& clicks_;
    };

    void button(std::uint8_t event) {
        xcb_test_fake_input(server->connection(), event, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        server->flush();
    }
    void click(QWidget& window) {
        const auto at = window.mapToGlobal(window.rect().center());
        xcb_test_fake_input(server->connection(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, server->root(),
                            static_cast<std::int16_t>(at.x()), static_cast<std::int16_t>(at.y()), 0);
        button(XCB_BUTTON_PRESS);
        button(XCB_BUTTON_RELEASE);
    }
    std::unique_ptr<QWidget> makeWindow(WindowNature nature) {
        auto window = std::make_unique<ClickCounter>(clicks);
        window->setGeometry(500, 300, 200, 100);
        overlays.prepare(window->winId(), nature);
        return window;
    }
    // Another application; done when it is the active one.
    std::unique_ptr<StandInGame> start(const QStringList& arguments = {}) {
        auto game = std::make_unique<StandInGame>(arguments);
        EXPECT_TRUE(becomesActive(game->window()));
        return game;
    }
    [[nodiscard]] bool becomesActive(xcb_window_t window) {
        return comesTrue([&] { return isActive(window); });
    }
    [[nodiscard]] bool liesOver(const QWidget& own, const StandInGame& game) {
        return comesTrue([&] { return isShownOver(own, game); });
    }
    [[nodiscard]] bool vanishes(const QWidget& own) {
        return comesTrue([&] { return !server->isViewable(idOf(own)); });
    }
    [[nodiscard]] bool reports(const std::string& identifier) {
        return comesTrue([&] { return !seen.empty() && seen.back() == identifier; });
    }
    void nameActive(xcb_window_t window) {
        server->setNumbers(server->root(), server->atoms().netActiveWindow, XCB_ATOM_WINDOW, {window});
        server->flush();
    }
    static void minimise(const StandInGame& game) {
        QProcess::execute(QStringLiteral("xdotool"),
                          {QStringLiteral("windowminimize"), QString::number(game.window())});
    }
    // As the program does it.
    void followOwner() {
        owner = workspace.observeFrontmostWindow([&](NativeWindow each) { overlays.setOwnerWindow(each); });
    }

    int clicks = 0;
    std::vector<std::string> seen;
    Subscription watching =
        workspace.observeFrontmostApplication([&](const std::string& each) { seen.push_back(each); });
    Subscription owner;
};

TEST_F(WorkspaceTest, ReportsTheFrontmostApplicationAtOnceAndAtEachChange) {
    EXPECT_EQ(seen, std::vector<std::string>{""});
    const auto game = start();
    ASSERT_TRUE(reports(gameIdentifier));
    {
        const auto notes = start(notesArguments);
        ASSERT_TRUE(reports("notes"));
        xcb_change_property(server->connection(), XCB_PROP_MODE_REPLACE, notes->window(), XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, 12, "notes\0later\0");
        server->flush();
        ASSERT_TRUE(reports("later")) << "a class that is set late";
    }
    ASSERT_TRUE(reports(gameIdentifier));

    const auto own = makeWindow(WindowNature::popup);
    own->show();
    ASSERT_TRUE(reports(ownIdentifier));
    own->hide();
    ASSERT_TRUE(reports(gameIdentifier));
    game->end();
    ASSERT_TRUE(reports(""));
    EXPECT_TRUE(std::adjacent_find(seen.begin(), seen.end()) == seen.end())
        << "an unchanged application is reported again";

    const auto count = seen.size();
    watching.reset();
    const auto again = start();
    QApplication::processEvents();
    EXPECT_EQ(seen.size(), count);
}

TEST_F(WorkspaceTest, TakesNothingForFrontmostThatIsNoApplicationOrIsNotThere) {
    std::vector<NativeWindow> told;
    owner = workspace.observeFrontmostWindow([&](NativeWindow each) { told.push_back(each); });
    const auto game = start();
    ASSERT_TRUE(reports(gameIdentifier));
    const auto own = makeWindow(WindowNature::popup);
    const xcb_window_t gone = xcb_generate_id(server->connection());
    // Some window managers name the root window, one that is gone, or one of ours that is hidden.
    for (const auto window : {server->root(), gone, idOf(*own), server->root()}) {
        const auto count = seen.size();
        nameActive(window);
        ASSERT_TRUE(comesTrue([&] { return seen.size() > count; }));
        EXPECT_EQ(seen.back(), "");
        nameActive(game->window());
        ASSERT_TRUE(reports(gameIdentifier)) << "it hears no more";
    }
    // A panel with an open menu: the game below it stays the frontmost one.
    const auto count = seen.size();
    auto* const other = server->connection();
    const xcb_window_t panel = xcb_generate_id(other);
    xcb_create_window(other, 0, panel, server->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      0, nullptr);
    xcb_change_property(other, XCB_PROP_MODE_REPLACE, panel, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, 12,
                        "panel\0Panel\0");
    server->setNumbers(panel, server->atoms().netWmWindowType, XCB_ATOM_ATOM, {server->atoms().netWmWindowTypeDock});
    nameActive(panel);
    ASSERT_TRUE(comesTrue([&] {  // it follows the panel's events by now
        return owned(xcb_get_window_attributes_reply(other, xcb_get_window_attributes(other, panel), nullptr))
                   ->all_event_masks != 0;
    }));
    EXPECT_EQ(seen.size(), count);
    EXPECT_EQ(told.size(), 2U) << "none, and the game";
}

TEST_F(WorkspaceTest, HearsWhatAnAnswerHasReadFromTheSocket) {
    const auto game = start();
    ASSERT_TRUE(reports(gameIdentifier));
    QEventLoop untilNothing;  // which rests, as the program does
    const auto leaving = workspace.observeFrontmostApplication([&](const std::string& each) {
        if (each.empty()) untilNothing.quit();
    });
    nameActive(server->root());
    ASSERT_FALSE(server->exists(XCB_NONE));  // it is done when this is answered
    EXPECT_EQ(workspace.pointerHold(), PointerHold::passing);
    QTimer::singleShot(20s, &untilNothing, &QEventLoop::quit);
    untilNothing.exec();
    EXPECT_EQ(seen.back(), "");
}

TEST_F(WorkspaceTest, TellsAHeldPointerFromOneThatADragOrAMenuHolds) {
    const auto holdIs = [&](PointerHold hold) { return comesTrue([&] { return workspace.pointerHold() == hold; }); };
    {
        const auto game = start();
        EXPECT_TRUE(holdIs(PointerHold::none));
    }
    const auto game = start({QStringLiteral("--hold-pointer")});
    EXPECT_TRUE(holdIs(PointerHold::lasting));
    button(XCB_BUTTON_PRESS);
    EXPECT_TRUE(holdIs(PointerHold::passing));
    button(XCB_BUTTON_RELEASE);
    EXPECT_TRUE(holdIs(PointerHold::lasting));
    auto* const other = server->connection();
    const auto cookie =
        xcb_grab_keyboard(other, 0, server->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto grabbed = owned(xcb_grab_keyboard_reply(other, cookie, nullptr));
    ASSERT_TRUE(grabbed && grabbed->status == XCB_GRAB_STATUS_SUCCESS);
    EXPECT_EQ(workspace.pointerHold(), PointerHold::passing);
    xcb_ungrab_keyboard(other, XCB_CURRENT_TIME);
    server->flush();
    EXPECT_TRUE(holdIs(PointerHold::lasting));
}

TEST_F(WorkspaceTest, SwitchingBetweenOurWindowAndTheGameNeverReportsAnythingElse) {
    const auto game = start();
    followOwner();
    ASSERT_TRUE(reports(gameIdentifier));
    seen.clear();
    const auto own = makeWindow(WindowNature::overlay);
    QElapsedTimer switching;
    // A window manager that takes longer than that may be believed that no window is active.
    const auto quickly = [&](const std::string& identifier) {
        const bool done = reports(identifier);
        EXPECT_TRUE(switching.elapsed() >= 100 || std::find(seen.begin(), seen.end(), "") == seen.end())
            << "a moment without any application is reported";
        std::erase(seen, "");
        return done;
    };
    for (int round = 0; round < 10; ++round) {
        own->show();
        ASSERT_TRUE(liesOver(*own, *game));
        switching.start();
        click(*own);
        ASSERT_TRUE(quickly(ownIdentifier));
        ASSERT_TRUE(becomesActive(idOf(*own)));
        switching.start();
        own->hide();
        ASSERT_TRUE(quickly(gameIdentifier));
    }
    EXPECT_EQ(std::unique(seen.begin(), seen.end()) - seen.begin(), 20);
}

TEST_F(WorkspaceTest, WindowsComeWithoutTheFocusAndOnlyTheOverlayTakesItOnAClickAndHandsItBack) {
    const auto game = start();
    followOwner();
    for (const auto nature : {WindowNature::overlay, WindowNature::nonActivating}) {
        const auto own = makeWindow(nature);
        for (int round = 0; round < 3; ++round) {
            own->show();
            ASSERT_TRUE(liesOver(*own, *game)) << round;
            EXPECT_TRUE(isActive(game->window())) << "being mapped it took the focus, round " << round;
            EXPECT_TRUE(comesTrue([&] {
                const auto states = server->numbers(idOf(*own), server->atoms().netWmState, XCB_ATOM_ATOM);
                return std::count(states.begin(), states.end(), server->atoms().netWmStateSkipTaskbar) == 1;
            })) << "it stands in the task bar";
            EXPECT_TRUE(focus.awaitOther(30s));
            workspace.hideAndUnhideWithoutActivation();  // nothing to hand back

            const int before = clicks;
            click(*own);
            ASSERT_TRUE(comesTrue([&] { return clicks == before + 1; })) << "the first click does not act";
            if (nature == WindowNature::overlay) {
                ASSERT_TRUE(becomesActive(idOf(*own))) << round;
                EXPECT_TRUE(isShownOver(*own, *game));
                {
                    const WindowManager manager;
                    manager.halt();
                    workspace.hideAndUnhideWithoutActivation();
                    EXPECT_FALSE(focus.awaitOther(50ms)) << "the focus cannot have come back";
                }
                EXPECT_TRUE(focus.awaitOther(30s));
                ASSERT_TRUE(becomesActive(game->window()));
                EXPECT_TRUE(own->isVisible());
                overlays.takeFocus(own->winId());
                ASSERT_TRUE(becomesActive(idOf(*own)));
                workspace.hideAndUnhideWithoutActivation();
                ASSERT_TRUE(becomesActive(game->window()));
                ASSERT_TRUE(liesOver(*own, *game)) << "the focused full-screen game covers the overlay";
            }
            EXPECT_TRUE(isActive(game->window()));
            own->hide();
            ASSERT_TRUE(vanishes(*own));
        }
    }
}

TEST_F(WorkspaceTest, BelongsToTheGameBeforeItIsMappedAndLeavesTheGameAlone) {
    const auto first = start();
    overlays.setOwnerWindow(first->window());
    const auto own = makeWindow(WindowNature::nonActivating);
    const auto ownerIs = [&](const StandInGame& game) {
        return server->numbers(idOf(*own), XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW) == std::vector{game.window()};
    };
    const WindowManager manager;
    manager.halt();
    own->show();
    EXPECT_TRUE(ownerIs(*first)) << "the window manager would read another's name";
    manager.resume();
    ASSERT_TRUE(liesOver(*own, *first));

    const auto second = start();
    overlays.setOwnerWindow(second->window());
    ASSERT_TRUE(liesOver(*own, *second));
    EXPECT_TRUE(ownerIs(*second));
    EXPECT_TRUE(server->isViewable(first->window())) << "whose name is no longer needed";
    own->hide();
    first->end();
    second->end();
    overlays.setOwnerWindow(second->window());
    own->show();
    EXPECT_TRUE(comesTrue([&] { return server->isViewable(idOf(*own)); }));
}

TEST_F(WorkspaceTest, LiesOverANewGameThatBearsTheNumberOfTheOneBefore) {
    followOwner();
    const auto own = makeWindow(WindowNature::nonActivating);
    own->show();
    for (int round = 0; round < 3; ++round) {
        const auto game = start();
        ASSERT_TRUE(liesOver(*own, *game)) << round;
    }
}

TEST_F(WorkspaceTest, GivesTheFocusToTheTopmostWindowWhenTheApplicationToReturnToHasVanished) {
    const auto bottom = start(notesArguments);
    const auto notes = start(notesArguments);
    const auto hidden = start(notesArguments);
    minimise(*hidden);
    ASSERT_TRUE(becomesActive(notes->window()));
    const auto game = start();
    const auto own = makeWindow(WindowNature::popup);
    own->show();
    ASSERT_TRUE(becomesActive(idOf(*own)));
    game->end();
    workspace.hideAndUnhideWithoutActivation();
    EXPECT_TRUE(focus.awaitOther(30s));
    EXPECT_TRUE(becomesActive(notes->window()));
    for (const auto& each : {notes.get(), bottom.get(), hidden.get()}) each->end();
    ASSERT_TRUE(comesTrue([&] { return !isActive(notes->window()) && !isActive(bottom->window()); }));
    workspace.hideAndUnhideWithoutActivation();  // nobody is left to take it
}

// A window manager that is slow to take a window into its frame tells it of other places meanwhile.
TEST_F(WorkspaceTest, APlaceOnTheWayToTheScreenIsNotRemembered) {
    std::vector<QRect> told;
    OverlayWindow window({.movable = true}, {});
    window.onPlaced([&](const QRect& frame) { told.push_back(frame); });
    const QRect belongs(500, 300, 250, 60);
    window.setGeometry(belongs);
    // As a window manager does it (ICCCM 4.1.5); done when the toolkit believes it.
    const auto claimPlace = [&](QPoint place) {
        xcb_configure_notify_event_t claim{};
        claim.response_type = XCB_CONFIGURE_NOTIFY;
        claim.event = claim.window = idOf(window);
        claim.x = static_cast<std::int16_t>(place.x());
        claim.y = static_cast<std::int16_t>(place.y());
        claim.width = static_cast<std::uint16_t>(window.width());
        claim.height = static_cast<std::uint16_t>(window.height());
        xcb_send_event(server->connection(), 0, claim.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&claim));
        server->flush();
        return comesTrue([&] { return window.pos() == place; });
    };

    // Hidden before it was ever painted: what it heard in between was never its place.
    const WindowManager manager;
    manager.halt();
    window.orderFront();
    ASSERT_TRUE(claimPlace({0, 0}));
    window.orderOut();
    EXPECT_TRUE(told.empty()) << told.front().x() << ", " << told.front().y();
    EXPECT_EQ(window.geometry(), belongs);

    // Shown and at rest, it is where the window manager puts it.
    manager.resume();
    window.orderFront();
    ASSERT_TRUE(comesTrue([&] { return window.windowHandle()->isExposed(); }));
    window.repaint();
    QApplication::processEvents();  // what the first picture led to
    ASSERT_TRUE(claimPlace({40, 50}));
    window.orderOut();
    EXPECT_EQ(told, std::vector{QRect(QPoint(40, 50), belongs.size())});
}

TEST(DoctorTest, FindsTheCapabilitiesOfThePrivateDesktopAndNamesTheMissing) {
    const auto absentOf = [](const std::vector<Capability>& capabilities) {
        std::vector<std::string> absent;
        for (const auto& each : capabilities)
            if (!each.present && each.kind != CapabilityKind::webSandbox)  // whose answer is the user's
                absent.push_back(capabilityName(each.kind));
        return absent;
    };
    // A file that nobody may run is no guardian.
    const auto here = examineCapabilities({.webModule = "/nonexistent/module.so", .guardian = "/proc/self/environ"});
    EXPECT_EQ(here.size(), 11U);
    EXPECT_EQ(absentOf(here), (std::vector<std::string>{"tray", "guardian", "web engine"})) << capabilitiesAsText(here);

    const auto display = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    const auto without = examineCapabilities(
        {.webModule = "/proc/self/exe", .guardian = "/proc/self/exe", .webModuleTrouble = "libX.so: no such file"});
    qputenv("DISPLAY", display);
    EXPECT_EQ(absentOf(without), (std::vector<std::string>{"display", "raw keys", "posting", "layout",
                                                           "frontmost application", "clicks", "tray", "web engine"}));
    const auto text = capabilitiesAsText(without);
    EXPECT_NE(text.find("cannot be loaded: libX.so: no such file"), std::string::npos) << text;
    EXPECT_NE(text.find("display                no   no X server"), std::string::npos) << text;
}

}  // namespace
}  // namespace vantor
