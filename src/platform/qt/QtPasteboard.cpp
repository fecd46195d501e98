#include "platform/qt/QtPasteboard.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace vantor {

std::string QtPasteboard::text() const { return QGuiApplication::clipboard()->text().toStdString(); }

void QtPasteboard::setText(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

}  // namespace vantor
