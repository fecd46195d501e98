#pragma once
// A player in front of a window: presses keys and the mouse the way the toolkit gets them from a desktop, at the native
// window, finds controls by what a screen reader says of them, and sees what is drawn. Main thread.

#include <QtCore/QElapsedTimer>
#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ui/Motion.h"

namespace vantor {

// All of a class below a widget. The toolkit's own search knows only its own classes.
template <typename Wanted>
[[nodiscard]] std::vector<Wanted*> below(const QWidget& widget) {
    std::vector<Wanted*> found;
    for (QObject* const each : widget.findChildren<QObject*>())
        if (auto* const wanted = dynamic_cast<Wanted*>(each)) found.push_back(wanted);
    return found;
}

inline void settle() {
    for (int turn = 0; turn < 4; ++turn) QApplication::processEvents();
    // Without a running loop the toolkit leaves these.
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Turns the loop until this is so.
[[nodiscard]] inline bool comesTrue(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 20'000) return false;
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

// Once nothing moves.
[[nodiscard]] inline QImage picture(QWidget& widget) {
    for (const Motion* const motion : below<Motion>(widget))
        while (motion->moving()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    settle();
    return widget.grab().toImage();
}

[[nodiscard]] inline std::string heardOf(QWidget& widget, QAccessible::Text kind = QAccessible::Name) {
    return QAccessible::queryAccessibleInterface(&widget)->text(kind).toStdString();
}

// The names, values and descriptions of what is shown below a widget, also of what is scrolled away.
template <typename Kind = QWidget>
[[nodiscard]] std::vector<std::string> heard(const QWidget& root) {
    std::vector<std::string> words;
    for (Kind* const each : below<Kind>(root)) {
        if (!each->isVisible()) continue;
        for (const auto kind : {QAccessible::Name, QAccessible::Value, QAccessible::Description})
            if (std::string text = heardOf(*each, kind); !text.empty()) words.push_back(std::move(text));
    }
    return words;
}

// The shown one with this name.
template <typename Kind = QAbstractButton>
[[nodiscard]] Kind& named(const QWidget& root, const std::string& name) {
    for (Kind* const each : below<Kind>(root))
        if (each->isVisible() && heardOf(*each) == name) return *each;
    throw std::runtime_error("there is no " + name);
}

inline void press(const QWidget& root, const std::string& name) {
    named(root, name).click();
    settle();
}

inline void sendKey(QObject& receiver, int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {}) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(&receiver, &event);
    }
    settle();
}

// Over what stands in the field.
inline void fillIn(QLineEdit& field, const QString& text) {
    field.setFocus();
    field.selectAll();
    for (const QChar each : text) sendKey(field, 0, QString(each));
}

inline void click(QWidget& target, Qt::KeyboardModifiers modifiers = {}, std::optional<QPoint> place = std::nullopt) {
    const QPointF at = place.value_or(target.rect().center());
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, at, target.mapToGlobal(at), Qt::LeftButton, held, modifiers);
        QApplication::sendEvent(&target, &event);
    }
    settle();
}

// Counts the paints of every widget, and keeps where.
class Painted final : public QObject {
public:
    Painted() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) regions[watched] += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    std::map<QObject*, QRegion> regions;
};

// Walks what a screen reader meets below a node: how much of it can be acted on, and what of that has no name.
struct AccessibilityWalk {
    int interactive = 0;
    std::vector<std::string> unnamed;  // by class

    explicit AccessibilityWalk(QWidget& root) { walk(QAccessible::queryAccessibleInterface(&root)); }

private:
    void walk(QAccessibleInterface* node) {
        if (!node || !node->isValid() || node->state().invisible) return;
        auto* const widget = qobject_cast<QWidget*>(node->object());
        using Role = QAccessible::Role;
        constexpr std::array pressed{Role::Button,   Role::ButtonMenu,   Role::CheckBox, Role::RadioButton,
                                     Role::ComboBox, Role::EditableText, Role::Slider,   Role::SpinBox,
                                     Role::PageTab,  Role::Link,         Role::ListItem, Role::MenuItem};
        // And whatever else the keyboard reaches, such as a row that is a plain widget to the toolkit.
        if (std::ranges::find(pressed, node->role()) != pressed.end() ||
            (node->state().focusable && widget && !widget->isWindow())) {
            ++interactive;
            if (node->text(QAccessible::Name).trimmed().isEmpty())
                unnamed.emplace_back(node->object() ? node->object()->metaObject()->className() : "a part");
        }
        for (int i = 0; i < node->childCount(); ++i) walk(node->child(i));
    }
};

inline void turnWheel(QWidget& over, QObject& receiver) {
    QWheelEvent wheel({5, 5}, over.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&receiver, &wheel);
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
