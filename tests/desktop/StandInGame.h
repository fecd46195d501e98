#pragma once
// The stand-in game in a process of its own, as the application that is not Vantor. It ends with this object.

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtWidgets/QApplication>
#include <csignal>

#include "ComesTrue.h"

namespace vantor {

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

}  // namespace vantor
