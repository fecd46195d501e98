// The frontmost application, the way back to it, and windows that take no focus: a real X server, a real window
// manager, the stand-in game as the other process, real toolkit windows as our own. Runs in demo/private_desktop.sh.

#include <gtest/gtest.h>
#include <unistd.h>
#include <xcb/xtest.h>

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtNetwork/QLocalServer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <algorithm>

#include "StandInGame.h"
#include "WindowManager.h"
#include "app/SystemCapability.h"
#include "app/cli/DoctorCommand.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/desktop/XcbTypingFocus.h"
#include "platform/linux/desktop/XcbWorkspace.h"
#include "platform/linux/services/Doctor.h"
#include "platform/qt/SingleInstance.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

using OtherApplication = StandInGame;

class WorkspaceTest : public testing::Test {
protected:
    void click(QWidget& window) {
        const auto at = window.mapToGlobal(window.rect().center());
        auto* connection = server_->connection();
        xcb_test_fake_input(connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, server_->root(),
                            static_cast<std::int16_t>(at.x()), static_cast<std::int16_t>(at.y()), 0);
        xcb_test_fake_input(connection, XCB_BUTTON_PRESS, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        xcb_test_fake_input(connection, XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        server_->flush();
    }
    std::unique_ptr<QWidget> makeWindow(WindowNature nature, int x = 500) {
        auto window = std::make_unique<ClickCounter>(clicks_);
        window->setGeometry(x, 300, 200, 100);
        overlays_.prepare(window->winId(), nature);
        return window;
    }
    bool isShownOver(const QWidget& window, const OtherApplication& other) {
        if (!server_->isViewable(static_cast<xcb_window_t>(window.winId()))) return false;
        const auto order = server_->clientsFromTop();
        const auto ours = std::find(order.begin(), order.end(), static_cast<xcb_window_t>(window.winId()));
        const auto theirs = std::find(order.begin(), order.end(), other.window());
        return ours < theirs && ours != order.end();
    }
    bool focusIs(xcb_window_t window) { return server_->clientWindow(server_->focusedWindow()) == window; }
    bool isActive(xcb_window_t window) { return server_->activeWindow() == window && focusIs(window); }

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

    std::unique_ptr<XcbDesktop> server_ = XcbDesktop::connect();
    int clicks_ = 0;
    XcbWorkspace workspace_{XcbDesktop::connect(), [](const std::string&) { return std::nullopt; },
                            static_cast<std::uint32_t>(::getpid())};
    XcbTypingFocus focus_{XcbDesktop::connect(), static_cast<std::uint32_t>(::getpid())};
    XcbOverlayWindows overlays_{XcbDesktop::connect()};
};

TEST_F(WorkspaceTest, ReportsTheFrontmostApplicationAtOnceAndAtEachChange) {
    std::vector<std::string> seen;
    auto subscription = workspace_.observeFrontmostApplication([&](const std::string& each) { seen.push_back(each); });
    EXPECT_EQ(seen, std::vector<std::string>{""});

    OtherApplication game({});
    ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; }));
    {
        OtherApplication notes(
            {QStringLiteral("--class"), QStringLiteral("notes"), QStringLiteral("--size"), QStringLiteral("300x200")});
        ASSERT_TRUE(comesTrue([&] { return seen.back() == "notes"; }));
    }
    ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; }));

    auto own = makeWindow(WindowNature::popup);
    own->show();
    ASSERT_TRUE(comesTrue([&] { return seen.back() == ownIdentifier; }));
    own->hide();
    ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; }));
    game.end();
    ASSERT_TRUE(comesTrue([&] { return seen.back().empty(); }));
    EXPECT_TRUE(std::adjacent_find(seen.begin(), seen.end()) == seen.end())
        << "an unchanged application is reported again";

    const auto count = seen.size();
    subscription.reset();
    OtherApplication again({});
    ASSERT_TRUE(comesTrue([&] { return isActive(again.window()); }));
    QApplication::processEvents();
    EXPECT_EQ(seen.size(), count);
}

TEST_F(WorkspaceTest, HearsOnAfterTheRootWindowWasNamedTheActiveOne) {
    OtherApplication game({});
    std::vector<std::string> seen;
    auto subscription = workspace_.observeFrontmostApplication([&](const std::string& each) { seen.push_back(each); });
    const auto name = [&](xcb_window_t window) {
        server_->setNumbers(server_->root(), server_->atoms().netActiveWindow, XCB_ATOM_WINDOW, {window});
        server_->flush();
    };
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; })) << round;
        name(server_->root());
        ASSERT_TRUE(comesTrue([&] { return seen.back().empty(); })) << round;
        name(game.window());
    }
}

TEST_F(WorkspaceTest, HearsWhatAnAnswerHasReadFromTheSocket) {
    OtherApplication game({});
    std::vector<std::string> seen;
    QEventLoop untilNothing;  // which rests, as the program does
    auto subscription = workspace_.observeFrontmostApplication([&](const std::string& each) {
        seen.push_back(each);
        if (each.empty()) untilNothing.quit();
    });
    ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; }));
    server_->setNumbers(server_->root(), server_->atoms().netActiveWindow, XCB_ATOM_WINDOW, {server_->root()});
    ASSERT_FALSE(server_->exists(XCB_NONE));  // it is done when this is answered
    EXPECT_EQ(workspace_.pointerHold(), PointerHold::passing);
    QTimer::singleShot(std::chrono::seconds(20), &untilNothing, &QEventLoop::quit);
    untilNothing.exec();
    EXPECT_TRUE(seen.back().empty());
}

TEST_F(WorkspaceTest, TellsAHeldPointerFromOneThatADragOrAMenuHolds) {
    {
        OtherApplication game({});
        EXPECT_TRUE(comesTrue([&] { return isActive(game.window()); }));
        EXPECT_TRUE(comesTrue([&] { return workspace_.pointerHold() == PointerHold::none; }));
    }
    OtherApplication game({QStringLiteral("--hold-pointer")});
    EXPECT_TRUE(comesTrue([&] { return workspace_.pointerHold() == PointerHold::lasting; }));
    const auto button = [&](std::uint8_t event) {
        xcb_test_fake_input(server_->connection(), event, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        server_->flush();
    };
    button(XCB_BUTTON_PRESS);
    EXPECT_TRUE(comesTrue([&] { return workspace_.pointerHold() == PointerHold::passing; }));
    button(XCB_BUTTON_RELEASE);
    EXPECT_TRUE(comesTrue([&] { return workspace_.pointerHold() == PointerHold::lasting; }));
    const auto grabbed =
        owned(xcb_grab_keyboard_reply(server_->connection(),
                                      xcb_grab_keyboard(server_->connection(), 0, server_->root(), XCB_CURRENT_TIME,
                                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                      nullptr));
    ASSERT_TRUE(grabbed && grabbed->status == XCB_GRAB_STATUS_SUCCESS);
    EXPECT_EQ(workspace_.pointerHold(), PointerHold::passing);
    xcb_ungrab_keyboard(server_->connection(), XCB_CURRENT_TIME);
    server_->flush();
    EXPECT_TRUE(comesTrue([&] { return workspace_.pointerHold() == PointerHold::lasting; }));
}

TEST_F(WorkspaceTest, SwitchingBetweenOurWindowAndTheGameNeverReportsAnythingElse) {
    OtherApplication game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    auto owner = workspace_.observeFrontmostWindow([&](NativeWindow each) { overlays_.setOwnerWindow(each); });
    std::vector<std::string> seen;
    auto subscription = workspace_.observeFrontmostApplication([&](const std::string& each) { seen.push_back(each); });
    ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; }));
    seen.clear();
    auto own = makeWindow(WindowNature::overlay);
    for (int round = 0; round < 10; ++round) {
        own->show();
        ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); }));
        click(*own);
        ASSERT_TRUE(comesTrue([&] { return isActive(static_cast<xcb_window_t>(own->winId())); }));
        ASSERT_TRUE(comesTrue([&] { return !seen.empty() && seen.back() == ownIdentifier; }));
        own->hide();
        ASSERT_TRUE(comesTrue([&] { return seen.back() == gameIdentifier; }));
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), std::string()), 0) << "a moment without any application is reported";
    EXPECT_EQ(seen.size(), 20U);
}

TEST_F(WorkspaceTest, OverlayTakesTheFocusOnAClickAndHandsItBack) {
    OtherApplication game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    auto subscription = workspace_.observeFrontmostWindow([&](NativeWindow each) { overlays_.setOwnerWindow(each); });
    auto own = makeWindow(WindowNature::overlay);
    const auto ownWindow = static_cast<xcb_window_t>(own->winId());
    for (int round = 0; round < 3; ++round) {
        own->show();
        ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); })) << round;
        EXPECT_TRUE(isActive(game.window())) << "mapping the overlay took the focus, round " << round;
        EXPECT_TRUE(focus_.awaitOther(250ms));
        workspace_.hideAndUnhideWithoutActivation();  // nothing to hand back

        const int before = clicks_;
        click(*own);
        ASSERT_TRUE(comesTrue([&] { return isActive(ownWindow); })) << round;
        ASSERT_TRUE(comesTrue([&] { return clicks_ == before + 1; })) << "the first click does not act";
        EXPECT_TRUE(isShownOver(*own, game));
        EXPECT_FALSE(focus_.awaitOther(20ms));

        workspace_.hideAndUnhideWithoutActivation();
        EXPECT_TRUE(focus_.awaitOther(250ms));
        ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
        EXPECT_TRUE(own->isVisible());
        ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); }))
            << "the focused full-screen game covers the overlay";
        own->hide();
        ASSERT_TRUE(comesTrue([&] { return !server_->isViewable(ownWindow); }));
    }
}

TEST_F(WorkspaceTest, NonActivatingWindowActsOnClicksWithoutTheFocus) {
    OtherApplication game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    auto subscription = workspace_.observeFrontmostWindow([&](NativeWindow each) { overlays_.setOwnerWindow(each); });
    auto own = makeWindow(WindowNature::nonActivating);
    for (int round = 1; round <= 3; ++round) {
        own->show();
        ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); })) << round;
        click(*own);
        ASSERT_TRUE(comesTrue([&] { return clicks_ == round; }));
        EXPECT_TRUE(isActive(game.window()));
        own->hide();
        ASSERT_TRUE(comesTrue([&] { return !server_->isViewable(static_cast<xcb_window_t>(own->winId())); }));
    }
}

TEST_F(WorkspaceTest, BelongsToTheGameBeforeItIsMappedAndLeavesTheGameAlone) {
    OtherApplication first({});
    ASSERT_TRUE(comesTrue([&] { return isActive(first.window()); }));
    overlays_.setOwnerWindow(first.window());
    auto own = makeWindow(WindowNature::nonActivating);
    const auto owner = [&] {
        return server_->numbers(static_cast<xcb_window_t>(own->winId()), XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW);
    };
    const WindowManager manager;
    manager.halt();
    own->show();
    EXPECT_EQ(owner(), std::vector{first.window()}) << "the window manager would read another's name";
    manager.resume();
    ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, first); }));

    OtherApplication second({});
    ASSERT_TRUE(comesTrue([&] { return isActive(second.window()); }));
    overlays_.setOwnerWindow(second.window());
    ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, second); }));
    EXPECT_EQ(owner(), std::vector{second.window()});
    EXPECT_TRUE(server_->isViewable(first.window())) << "whose name is no longer needed";
    own->hide();
    first.end();
    second.end();
    overlays_.setOwnerWindow(second.window());
    own->show();
    EXPECT_TRUE(comesTrue([&] { return server_->isViewable(static_cast<xcb_window_t>(own->winId())); }));
}

TEST_F(WorkspaceTest, ComesBackWithAGameThatWasMinimised) {
    OtherApplication game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    overlays_.setOwnerWindow(game.window());
    auto own = makeWindow(WindowNature::nonActivating);
    own->show();
    ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); }));
    for (int round = 0; round < 2; ++round) {
        QProcess::execute(QStringLiteral("xdotool"),
                          {QStringLiteral("windowminimize"), QString::number(game.window())});
        ASSERT_TRUE(comesTrue([&] { return !server_->isViewable(static_cast<xcb_window_t>(own->winId())); }))
            << "this window manager iconifies ours with the game";
        own->hide();
        server_->requestActivation(game.window());
        server_->flush();
        ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
        own->show();
        ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); })) << round;
    }
}

TEST_F(WorkspaceTest, LiesOverANewGameThatBearsTheNumberOfTheOneBefore) {
    auto subscription = workspace_.observeFrontmostWindow([&](NativeWindow each) { overlays_.setOwnerWindow(each); });
    auto own = makeWindow(WindowNature::nonActivating);
    own->show();
    for (int round = 0; round < 3; ++round) {
        OtherApplication game({});
        ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
        ASSERT_TRUE(comesTrue([&] { return isShownOver(*own, game); })) << round;
    }
}

TEST_F(WorkspaceTest, BearsThatTheApplicationToReturnToHasVanished) {
    OtherApplication notes(
        {QStringLiteral("--class"), QStringLiteral("notes"), QStringLiteral("--size"), QStringLiteral("300x200")});
    ASSERT_TRUE(comesTrue([&] { return isActive(notes.window()); }));
    OtherApplication game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    auto own = makeWindow(WindowNature::popup);
    own->show();
    ASSERT_TRUE(comesTrue([&] { return isActive(static_cast<xcb_window_t>(own->winId())); }));
    game.end();
    workspace_.hideAndUnhideWithoutActivation();
    EXPECT_TRUE(focus_.awaitOther(250ms));
    EXPECT_TRUE(comesTrue([&] { return isActive(notes.window()); }));
    notes.end();
    ASSERT_TRUE(comesTrue([&] { return !isActive(notes.window()); }));
    workspace_.hideAndUnhideWithoutActivation();  // nobody is left to take it
}

TEST(DoctorTest, FindsTheCapabilitiesOfThePrivateDesktopAndNamesTheMissing) {
    const auto capabilities =
        examineCapabilities({.webModule = "/nonexistent/module.so", .guardian = "/nonexistent/guardian"});
    std::vector<std::string> absent;
    for (const auto& each : capabilities)
        if (!each.present) absent.push_back(capabilityName(each.kind));
    EXPECT_EQ(capabilities.size(), 11U);
    EXPECT_EQ(absent, (std::vector<std::string>{"tray", "guardian", "web engine"})) << capabilitiesAsText(capabilities);

    const auto display = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    const auto without = examineCapabilities(
        {.webModule = "/proc/self/exe", .guardian = "/proc/self/exe", .webModuleTrouble = "libX.so: no such file"});
    qputenv("DISPLAY", display);
    absent.clear();
    for (const auto& each : without)
        if (!each.present && each.kind != CapabilityKind::webSandbox)  // whose answer is the user's
            absent.push_back(capabilityName(each.kind));
    EXPECT_EQ(absent, (std::vector<std::string>{"display", "raw keys", "posting", "layout", "frontmost application",
                                                "clicks", "tray", "web engine"}));
    EXPECT_NE(capabilitiesAsText(without).find("cannot be loaded: libX.so: no such file"), std::string::npos);
    EXPECT_NE(capabilitiesAsText(without).find("display                no   no X server"), std::string::npos)
        << capabilitiesAsText(without);
}

TEST(SingleInstanceTest, SecondStartAsksTheFirstAndAStaleSocketIsReplaced) {
    const auto name = QStringLiteral("vantor-test.socket");
    const auto path = qEnvironmentVariable("XDG_RUNTIME_DIR") + QLatin1Char('/') + name;
    EXPECT_EQ(SingleInstance::nameFor(":0.0"), SingleInstance::nameFor(":0"));
    EXPECT_NE(SingleInstance::nameFor(":0"), SingleInstance::nameFor(":1"));
    int opened = 0;
    {
        SingleInstance first([&] { ++opened; });
        ASSERT_EQ(first.claim(name), SingleInstance::Role::first);
        EXPECT_EQ(
            QFile::permissions(path) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
            QFile::Permissions());
        for (int at = 1; at <= 2; ++at) {
            SingleInstance second([] { FAIL() << "the second start is asked"; });
            EXPECT_EQ(second.claim(name), SingleInstance::Role::second);
            EXPECT_TRUE(comesTrue([&] { return opened == at; }));
        }
    }
    // What a killed process leaves: a bound socket file on which nobody listens.
    {
        QLocalServer server;
        ASSERT_TRUE(server.listen(path + QStringLiteral(".live")));
        ASSERT_TRUE(QFile::rename(path + QStringLiteral(".live"), path));
    }
    ASSERT_TRUE(QFile::exists(path));
    SingleInstance next([&] { ++opened; });
    EXPECT_EQ(next.claim(name), SingleInstance::Role::first);
}

}  // namespace
}  // namespace vantor
