#include "app/view/FloatWindow.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <algorithm>
#include <utility>

namespace vantor {

namespace {

QPoint cornerOnScreen(const QRect& frame, const QRect& screen) {
    return {std::max(screen.left(), std::min(frame.left(), screen.right() + 1 - frame.width())),
            std::max(screen.top(), std::min(frame.top(), screen.bottom() + 1 - frame.height()))};
}

}  // namespace

FloatWindow::FloatWindow(const QString& title, QSize size, bool movable, Prepare prepare)
    : OverlayWindow({.focus = Focus::never, .movable = movable, .drawnByChildren = true}, std::move(prepare)) {
    setWindowTitle(title);
    resize(size);
}

void FloatWindow::setContent(QWidget* content) {
    content_ = content;
    content_->setParent(this);
    layOut();
    content_->show();
}

// Some window managers make a window larger than it asked to be.
void FloatWindow::layOut() {
    if (content_) content_->setGeometry({{}, held_.isEmpty() ? size() : held_});
}

void FloatWindow::fit(QSize size) {
    held_ = size;
    if (!size.isEmpty()) {
        const QPoint corner = corner_.value_or(pos() - pushed_);
        // What has a fixed place must not move away from under the pointer that just opened it.
        const QPoint shown = corner_ ? corner : cornerOnScreen({corner, size}, screenAt({corner, size}));
        pushed_ = shown - corner;
        setGeometry(QRect(shown, size));
        layOut();
    }
    if (held_.isEmpty())
        OverlayWindow::orderOut();
    else if (isWanted_ && !isVisible())
        OverlayWindow::orderFront();
    cut();
}

void FloatWindow::orderFront() {
    isWanted_ = true;
    if (wanted_) wanted_(true);
    if (!held_.isEmpty()) OverlayWindow::orderFront();
}

void FloatWindow::orderOut() {
    isWanted_ = false;
    if (wanted_) wanted_(false);
    OverlayWindow::orderOut();
}

void FloatWindow::standAt(QPoint corner) {
    corner_ = corner;
    move(corner);
}

void FloatWindow::place(const QRect& frame) {
    pushed_ = {};
    OverlayWindow::place({frame.topLeft(), held_.isEmpty() ? frame.size() : held_});
    if (!held_.isEmpty()) fit(held_);
}

// The toolkit learns only later that a window has gone over to another screen.
QRect FloatWindow::screenAt(const QRect& frame) const {
    const QScreen* const there = QGuiApplication::screenAt(frame.center());
    return (there ? there : screen())->availableGeometry();
}

QRect FloatWindow::placedFrame() const { return geometry().translated(-pushed_); }

void FloatWindow::mouseMoveEvent(QMouseEvent* event) {
    // Dragged away, it belongs where it is.
    if (isDragged()) pushed_ = {};
    OverlayWindow::mouseMoveEvent(event);
}

// It goes from where it belongs, so that it is there when it comes again.
void FloatWindow::hideEvent(QHideEvent* event) {
    if (!pushed_.isNull()) move(pos() - std::exchange(pushed_, {}));
    OverlayWindow::hideEvent(event);
}

void FloatWindow::resizeEvent(QResizeEvent* event) {
    layOut();
    OverlayWindow::resizeEvent(event);
}

}  // namespace vantor
