#include "input/view/MsgButton.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <utility>

#include "ui/Fonts.h"
#include "ui/GW2Button.h"

namespace vantor {

namespace {

constexpr int fontSize = 14;
constexpr int side = 14;

}  // namespace

MsgButton::MsgButton(std::function<void()> action, const QString& message, QString content, Scheduler& scheduler,
                     QWidget* parent)
    : StatusButton(
          scheduler,
          [action = std::move(action), message](const Show& show) {
              action();
              show(message);
          },
          parent),
      content_(std::move(content)) {
    setAccessibleName(content_);
}

QSize MsgButton::labelSize() const {
    const QFontMetrics metrics(sansFont(fontSize));
    return {metrics.horizontalAdvance(content_) + 2 * side, metrics.height() + 14};
}

void MsgButton::paintLabel(QPainter& painter, const QRect& frame, const ControlState& state) const {
    const GW2ButtonStyle style;
    ControlState bare = state;
    bare.focused = false;
    style.paintBackground(painter, frame, bare);
    painter.setFont(sansFont(fontSize));
    painter.setPen(style.textColour(state));
    painter.drawText(frame, Qt::AlignCenter, content_);
}

}  // namespace vantor
