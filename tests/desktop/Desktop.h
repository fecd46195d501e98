#pragma once
// The desktop as Vantor sees it, and what is really so: which window is active, what lies over what. For a test's
// fixture to be made of. And who else is there.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QtCore/QProcess>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>

#include "ComesTrue.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/desktop/XcbTypingFocus.h"
#include "platform/linux/desktop/XcbWorkspace.h"

namespace vantor {

// The stand-in game in a process of its own, as the application that is not Vantor. It ends with this object.
class StandInGame {
public:
    explicit StandInGame(const QStringList& arguments) {
        const auto program = qEnvironmentVariable(
            "VANTOR_STANDIN_GAME", QApplication::applicationDirPath() + QStringLiteral("/../demo/standin-game"));
        process_.start(program, arguments);
        EXPECT_TRUE(comesTrue([this] { return process_.canReadLine() || process_.state() == QProcess::NotRunning; }));
        const auto line = process_.readLine().trimmed().split(' ');
        EXPECT_EQ(line.value(0), "ready") << "the stand-in game does not start";
        window_ = line.value(1).toUInt(nullptr, 0);
    }
    StandInGame(const StandInGame&) = delete;
    StandInGame& operator=(const StandInGame&) = delete;
    ~StandInGame() { end(); }

    [[nodiscard]] xcb_window_t window() const { return window_; }
    void signal(int number) { ::kill(static_cast<pid_t>(process_.processId()), number); }
    void end() {
        process_.kill();
        process_.waitForFinished();
    }

private:
    QProcess process_;
    xcb_window_t window_ = XCB_NONE;
};

// The window manager of this display, which a test may halt. It goes on when this ends.
class WindowManager {
public:
    WindowManager() { EXPECT_GT(process_, 1) << "no window manager on this display"; }
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;
    ~WindowManager() { resume(); }
    void halt() const { signal(SIGSTOP); }
    void resume() const { signal(SIGCONT); }

private:
    void signal(int number) const { EXPECT_TRUE(process_ > 1 && ::kill(process_, number) == 0); }

    const pid_t process_ = qEnvironmentVariableIntValue("VANTOR_WINDOW_MANAGER");
};

struct Desktop {
    std::unique_ptr<XcbDesktop> server = XcbDesktop::connect();
    XcbWorkspace workspace{XcbDesktop::connect(), [](const std::string&) { return std::nullopt; },
                           static_cast<std::uint32_t>(::getpid())};
    XcbTypingFocus focus{XcbDesktop::connect(), static_cast<std::uint32_t>(::getpid())};
    XcbOverlayWindows overlays{XcbDesktop::connect()};

    static xcb_window_t idOf(const QWidget& window) { return static_cast<xcb_window_t>(window.winId()); }
    [[nodiscard]] bool isActive(xcb_window_t window) const {
        return server->activeWindow() == window && server->clientWindow(server->focusedWindow()) == window;
    }
    [[nodiscard]] bool isShownOver(const QWidget& window, const StandInGame& other) const {
        if (!server->isViewable(idOf(window))) return false;
        const auto order = server->clientsFromTop();
        const auto ours = std::find(order.begin(), order.end(), idOf(window));
        const auto theirs = std::find(order.begin(), order.end(), other.window());
        return ours < theirs && ours != order.end();
    }
};

}  // namespace vantor
