#include "app/view/FloatWindow.h"

#include <utility>

namespace vantor {

FloatWindow::FloatWindow(const QString& title, QSize size, bool movable, Prepare prepare)
    : OverlayWindow({.focus = Focus::never, .movable = movable}, std::move(prepare)) {
    setWindowTitle(title);
    setWindowFlag(Qt::WindowTransparentForInput);
    resize(size);
}

}  // namespace vantor
