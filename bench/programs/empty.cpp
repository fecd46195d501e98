// The least that a program of the same toolkit does: a window of the icon's size on the screen.

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

int main(int count, char** arguments) {
    const QApplication application(count, arguments);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Empty"));
    window.setWindowFlags(Qt::FramelessWindowHint);
    window.resize(48, 48);
    window.show();
    return QApplication::exec();
}
