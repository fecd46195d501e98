#include "app/view/FloatWindow.h"

#include <QtGui/QWindow>
#include <utility>

namespace vantor {

FloatWindow::FloatWindow(const QString& title, QSize size, bool movable, Prepare prepare)
    : OverlayWindow({.focus = Focus::never, .movable = movable}, std::move(prepare)) {
    setWindowTitle(title);
    setWindowFlag(Qt::WindowTransparentForInput);
    resize(size);
}

void FloatWindow::setContent(QWidget* content) {
    content_ = content;
    content_->setParent(this);
    content_->setGeometry(rect());
    content_->show();
}

void FloatWindow::fit(QSize size) {
    if (!size.isEmpty()) setGeometry(QRect(place_.value_or(pos()), size));
    // The toolkit gives the window an input shape of the size that it has when the flag goes: so once more for each
    // size.
    letClicksThrough(true);
    letClicksThrough(size.isEmpty());
}

void FloatWindow::standAt(QPoint place) {
    place_ = place;
    move(place);
}

void FloatWindow::resizeEvent(QResizeEvent* event) {
    OverlayWindow::resizeEvent(event);
    if (content_) content_->setGeometry(rect());
}

void FloatWindow::letClicksThrough(bool through) {
    if (windowFlags().testFlag(Qt::WindowTransparentForInput) == through) return;
    // The widget's own setter would make the native window anew, without its nature and place.
    overrideWindowFlags(windowFlags().setFlag(Qt::WindowTransparentForInput, through));
    if (QWindow* const window = windowHandle()) window->setFlag(Qt::WindowTransparentForInput, through);
}

}  // namespace vantor
