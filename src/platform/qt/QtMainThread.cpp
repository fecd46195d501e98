#include "platform/qt/QtMainThread.h"

#include <QtCore/QMetaObject>
#include <utility>

namespace vantor {

void QtMainThread::post(std::function<void()> task) {
    QMetaObject::invokeMethod(&receiver_, std::move(task), Qt::QueuedConnection);
}

}  // namespace vantor
