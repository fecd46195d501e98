#pragma once
// A list that opens over everything else in its window: a picker's choices, a field's menu. It is no window of its own,
// which would take the focus. Gone at a press outside, at Escape and when the window changes. Main thread.

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "ui/AccessibleControl.h"
#include "ui/EscapeCatch.h"

namespace vantor {

class ListPopup : public QWidget, public SelfDescribing {
public:
    struct Line {
        QString text;
        QString image{};
        bool enabled = true;
    };
    struct Wants {
        QString name;  // for a screen reader
        std::vector<Line> lines;
        std::optional<std::size_t> chosen{};
        std::function<void(std::size_t)> take;
        // After it is gone, whichever way; `byKeyboard`: the control that opened it has the focus again.
        std::function<void(bool byKeyboard)> closed;
    };

    // Of the anchor's window, below this part of the anchor or above it where there is more room. A press on the anchor
    // is the anchor's own to answer.
    ListPopup(QWidget& anchor, const QRect& part, Wants wants);

    void close(bool byKeyboard);
    [[nodiscard]] std::size_t current() const { return current_; }
    [[nodiscard]] const std::vector<Line>& lines() const { return wants_.lines; }
    [[nodiscard]] const std::optional<std::size_t>& chosen() const { return wants_.chosen; }
    [[nodiscard]] QRect lineAt(std::size_t index) const;
    void take(std::size_t index);

    [[nodiscard]] static int lineHeight();
    [[nodiscard]] static QSize sizeFor(const std::vector<Line>& lines);
    [[nodiscard]] QAccessibleInterface* makeAccessible() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void place(const QWidget& anchor, const QRect& part);
    void scrollTo(int top);
    void pointAt(QPoint place);
    void go(std::size_t index);
    void step(int way);
    void typed(const QString& letters);
    [[nodiscard]] std::optional<std::size_t> lineUnder(QPoint place) const;

    QPointer<QWidget> anchor_;
    Wants wants_;
    std::size_t current_ = 0;
    int scrolled_ = 0;
    bool closed_ = false;
    std::optional<EscapeCatch> escape_;
};

}  // namespace vantor
