#include "input/view/WaypointButton.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include "ui/ControlState.h"
#include "ui/Images.h"

namespace vantor {

namespace {

constexpr int imageSize = 20;

}  // namespace

WaypointButton::WaypointButton(const QString& chatLink, const ChatLinkNeeds& needs, Scheduler& scheduler,
                               QWidget* parent)
    : StatusButton(
          scheduler,
          [this, link = chatLink.toStdString(), needs](const Show& show) {
              pressChatLink(link, needs, clickedWithShift_,
                            [show](const std::string& message) { show(QString::fromStdString(message)); });
          },
          parent) {
    setToolTip(QStringLiteral("Copy to clipboard\nShift + click types it into the chat"));
    setAccessibleName(QStringLiteral("Chat link"));
    resize(sizeHint());
}

void WaypointButton::mouseReleaseEvent(QMouseEvent* event) {
    clickedWithShift_ = event->modifiers().testFlag(Qt::ShiftModifier);
    StatusButton::mouseReleaseEvent(event);
    clickedWithShift_ = false;
}

QSize WaypointButton::labelSize() const { return {imageSize + 10, imageSize + 10}; }

void WaypointButton::paintLabel(QPainter& painter, const QRect& frame, const ControlState& state) const {
    paintHover(painter, frame, state.glow);
    painter.drawPixmap(frame.left() + 5, frame.top() + (frame.height() - imageSize) / 2,
                       image(QStringLiteral("waypoint"), {imageSize, imageSize}, devicePixelRatioF()));
}

}  // namespace vantor
