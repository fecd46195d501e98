#include "platform/macos/NativeView.h"

#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

namespace vantor {

QWidget* widgetOfNativeView(void* view) {
    // The container owns the foreign window, which leaves the view alone when it goes.
    QWidget* const widget = QWidget::createWindowContainer(QWindow::fromWinId(reinterpret_cast<WId>(view)));
    widget->setAccessibleName(QStringLiteral("Web page"));
    return widget;
}

}  // namespace vantor
