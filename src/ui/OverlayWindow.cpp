#include "ui/OverlayWindow.h"

#include <QtGui/QMouseEvent>
#include <algorithm>
#include <utility>

#include "ui/Blending.h"

namespace vantor {

namespace {

// The shadow's margin and the torn edge. Where the shadow is cut off, some of the panel as well.
int gripWidth() { return isBlending() ? 16 : 24; }

Qt::WindowFlags flagsOf(OverlayWindow::Focus focus) {
    const Qt::WindowFlags flags =
        Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
    return focus == OverlayWindow::Focus::never ? flags | Qt::WindowDoesNotAcceptFocus : flags;
}

Qt::CursorShape cursorOf(Qt::Edges edges) {
    const bool horizontal = edges & (Qt::LeftEdge | Qt::RightEdge);
    const bool vertical = edges & (Qt::TopEdge | Qt::BottomEdge);
    if (horizontal && vertical) {
        const bool falling = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
        return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    if (horizontal) return Qt::SizeHorCursor;
    return vertical ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

}  // namespace

OverlayWindow::OverlayWindow(const Traits& traits, Prepare prepare)
    : QWidget(nullptr, flagsOf(traits.focus)), traits_(traits), prepare_(std::move(prepare)) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    // The game keeps the focus while the player points here.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setMouseTracking(traits.resizable);
}

void OverlayWindow::orderFront() {
    prepareNative();
    if (isVisible()) {
        raise();
    } else {
        frameTold_ = placedFrame();
        settling_ = true;
        cut();
        show();
    }
    if (orderedFront_) orderedFront_(winId());
}

void OverlayWindow::place(const QRect& frame) {
    setGeometry(frame);
    frameTold_ = placedFrame();
}

void OverlayWindow::prepareNative() {
    const WId native = winId();
    if (std::exchange(prepared_, native) != native && prepare_) prepare_(native);
}

bool OverlayWindow::event(QEvent* event) {
    // Not within the painting, which a move may set off anew.
    if (event->type() == QEvent::Paint && settling_)
        QMetaObject::invokeMethod(this, [this] { settle(); }, Qt::QueuedConnection);
    if (event->type() == blendingChanged()) cut();
    // After the toolkit has given the focus back to a control, which shows nothing then.
    if (event->type() == QEvent::WindowActivate && std::exchange(keyboardExpected_, false))
        QMetaObject::invokeMethod(this, [this] { showKeyboard(); }, Qt::QueuedConnection);
    if (event->type() == QEvent::WinIdChange && prepared_ && internalWinId()) prepareNative();
    return QWidget::event(event);
}

void OverlayWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible()) cut();
}

void OverlayWindow::cut() { cutToSolidPart(*this, traits_.drawnByChildren ? QWidget::DrawChildren : RenderFlags()); }

void OverlayWindow::expectKeyboard() {
    if (isActiveWindow())
        showKeyboard();
    else
        keyboardExpected_ = true;
}

void OverlayWindow::showKeyboard() {
    const auto takes = [](const QWidget* each) {
        return each && each->isVisible() && each->isEnabled() && (each->focusPolicy() & Qt::TabFocus) != 0;
    };
    QWidget* first = focusWidget();
    for (QWidget* each = nextInFocusChain(); !takes(first) && each != this; each = each->nextInFocusChain())
        first = each;
    if (!takes(first)) return;
    first->clearFocus();
    first->setFocus(Qt::TabFocusReason);
}

void OverlayWindow::orderOut() {
    dragging_ = false;
    keyboardExpected_ = false;
    settle();
    // A window manager may have moved it by its own means.
    if (isVisible()) tellPlace();
    hide();
}

Qt::Edges OverlayWindow::edgesAt(QPoint place) const {
    Qt::Edges edges;
    if (!traits_.resizable) return edges;
    const int grip = gripWidth();
    if (place.x() < grip) edges |= Qt::LeftEdge;
    if (place.x() >= width() - grip) edges |= Qt::RightEdge;
    if (place.y() < grip) edges |= Qt::TopEdge;
    if (place.y() >= height() - grip) edges |= Qt::BottomEdge;
    return edges;
}

void OverlayWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    edges_ = edgesAt(event->position().toPoint());
    dragging_ = edges_ || traits_.movable;
    pointerAtStart_ = event->globalPosition().toPoint();
    frameAtStart_ = geometry();
    if (traits_.focus == Focus::onClick && !isActiveWindow()) activateWindow();
}

void OverlayWindow::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_)
        drag(event->globalPosition().toPoint());
    else if (traits_.resizable)
        setCursor(cursorOf(edgesAt(event->position().toPoint())));
}

void OverlayWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(dragging_, false)) return;
    tellPlace();
}

// While a window manager takes the window into its frame, the toolkit may hear of a place that the window only had in
// between, and keep to it.
void OverlayWindow::settle() {
    if (!std::exchange(settling_, false)) return;
    const QPoint belongs = frameTold_.topLeft() + pos() - placedFrame().topLeft();
    if (pos() != belongs) move(belongs);
}

void OverlayWindow::tellPlace() {
    const QRect frame = placedFrame();
    if (frame != std::exchange(frameTold_, frame) && placed_) placed_(frame);
}

void OverlayWindow::drag(QPoint pointer) {
    const QPoint way = pointer - pointerAtStart_;
    if (!edges_) {
        move(frameAtStart_.topLeft() + way);
        return;
    }
    QRect frame = frameAtStart_;
    // The edge opposite to the one that is pulled stays where it is, also at the smallest size.
    if (edges_ & Qt::LeftEdge) frame.setLeft(std::min(frame.left() + way.x(), frame.right() + 1 - minimumWidth()));
    if (edges_ & Qt::RightEdge) frame.setRight(std::max(frame.right() + way.x(), frame.left() - 1 + minimumWidth()));
    if (edges_ & Qt::TopEdge) frame.setTop(std::min(frame.top() + way.y(), frame.bottom() + 1 - minimumHeight()));
    if (edges_ & Qt::BottomEdge) frame.setBottom(std::max(frame.bottom() + way.y(), frame.top() - 1 + minimumHeight()));
    setGeometry(frame);
}

}  // namespace vantor
