#pragma once
// Lets the toolkit go on until a condition holds; false where it does not in a minute, which is long enough for a
// machine whose cores are busy.

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QApplication>
#include <functional>

namespace vantor {

inline bool comesTrue(const std::function<bool()>& condition) {
    constexpr qint64 patience = 60'000;  // milliseconds
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > patience) return false;
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

}  // namespace vantor
