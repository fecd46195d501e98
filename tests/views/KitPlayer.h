#pragma once
// A window with controls, and a player who presses keys and the mouse the way the toolkit gets them from a desktop: at
// the native window. Main thread.

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>
#include <optional>
#include <vector>

namespace vantor {

// All of a class below a widget. The toolkit's own search knows only its own classes.
template <typename Wanted>
[[nodiscard]] std::vector<Wanted*> below(const QWidget& widget) {
    std::vector<Wanted*> found;
    for (QObject* const each : widget.findChildren<QObject*>())
        if (auto* const wanted = dynamic_cast<Wanted*>(each)) found.push_back(wanted);
    return found;
}

class KitWindow : public QWidget {
public:
    KitWindow() {
        auto* const column = new QVBoxLayout(this);
        column->setContentsMargins(20, 20, 20, 20);
        resize(640, 480);
    }

    // Adopted.
    template <typename Control>
    Control& add(Control* control) {
        layout()->addWidget(control);
        return *control;
    }
    void open() {
        show();
        activateWindow();
        settle();
    }
    static void settle() {
        for (int turn = 0; turn < 4; ++turn) QApplication::processEvents();
        // Without a running loop the toolkit leaves these.
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void down(int key, const QString& text = {}) { send(QEvent::KeyPress, key, text); }
    void up(int key) { send(QEvent::KeyRelease, key, {}); }
    void press(int key, const QString& text = {}) {
        down(key, text);
        up(key);
    }
    void type(const QString& text) {
        for (const QChar letter : text) press(0, letter);
    }
    // In the middle of the control, or at this place of it.
    void click(QWidget& control, std::optional<QPoint> place = std::nullopt) {
        const QPoint at = control.mapTo(this, place.value_or(control.rect().center()));
        mouse(QEvent::MouseButtonPress, at, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, at, Qt::NoButton);
    }
    void mouse(QEvent::Type type, QPoint at, Qt::MouseButtons buttons) {
        QMouseEvent event(type, QPointF(at), QPointF(mapToGlobal(at)), Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(windowHandle(), &event);
        settle();
    }

protected:
    // What no control took.
    void keyPressEvent(QKeyEvent* event) override { notTaken.push_back(event->key()); }

public:
    std::vector<int> notTaken;

private:
    void send(QEvent::Type type, int key, const QString& text) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(windowHandle(), &event);
        settle();
    }
};

}  // namespace vantor
