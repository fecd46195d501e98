#include "platform/qt/QtScheduler.h"

#include <QtCore/QTimer>
#include <utility>

namespace vantor {

void QtScheduler::after(std::chrono::milliseconds delay, std::function<void()> task) {
    QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(task));
}

}  // namespace vantor
