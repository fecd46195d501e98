#include "app/view/IconWindow.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <utility>

#include "ui/Images.h"

namespace vantor {

namespace {

constexpr QSize iconSize{32, 32};

}  // namespace

IconWindow::IconWindow(std::function<void()> pressed, std::function<void(QPoint)> openMenu, Prepare prepare)
    : OverlayWindow({.focus = Focus::never}, std::move(prepare)),
      pressed_(std::move(pressed)),
      openMenu_(std::move(openMenu)) {
    describeControls();
    setWindowTitle(QStringLiteral("Vantor icon"));
    setAccessibleName(QStringLiteral("Show or hide Vantor"));
    setToolTip(
        QStringLiteral("Show or hide Vantor; with the hotkey while a full-screen game holds the pointer\n"
                       "The right button has the menu"));
    setCursor(Qt::PointingHandCursor);
    setFixedSize(iconSize);
}

void IconWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString name = hovered_ ? QStringLiteral("icon.top.selected") : QStringLiteral("icon.top");
    painter.drawPixmap(0, down_ ? 1 : 0, image(name, iconSize, devicePixelRatioF()));
}

void IconWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) return openMenu_(event->globalPosition().toPoint());
    if (event->button() != Qt::LeftButton) return;
    down_ = true;
    update();
}

void IconWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(down_, false)) return;
    update();
    if (QRect({}, iconSize).contains(event->position().toPoint())) pressed_();
}

void IconWindow::enterEvent(QEnterEvent*) {
    hovered_ = true;
    update();
}

void IconWindow::leaveEvent(QEvent*) {
    hovered_ = false;
    update();
}

}  // namespace vantor
