#pragma once
// The window manager of this display, which a test may halt. It goes on when this ends.

#include <gtest/gtest.h>
#include <sys/types.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <csignal>

namespace vantor {

class WindowManager {
public:
    WindowManager() {
        const QByteArray display = "DISPLAY=" + qgetenv("DISPLAY");
        for (const QString& each : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
            QFile name(QStringLiteral("/proc/%1/comm").arg(each));
            QFile variables(QStringLiteral("/proc/%1/environ").arg(each));
            if (!name.open(QIODevice::ReadOnly) || name.readAll().trimmed() != "openbox") continue;
            if (!variables.open(QIODevice::ReadOnly) || !variables.readAll().split('\0').contains(display)) continue;
            process_ = each.toInt();
        }
        EXPECT_GT(process_, 1) << "no window manager on this display";
    }
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;
    ~WindowManager() { resume(); }

    void halt() const {
        if (process_ > 1) ::kill(process_, SIGSTOP);
    }
    void resume() const {
        if (process_ > 1) ::kill(process_, SIGCONT);
    }

private:
    pid_t process_ = 0;
};

}  // namespace vantor
