#include "input/view/StatusButton.h"

#include <QtCore/QPointer>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int footnote = 12;
constexpr int ringRoom = 3;
constexpr int messageGap = 6;

}  // namespace

StatusButton::StatusButton(Scheduler& scheduler, std::function<void(const Show& show)> press, QWidget* parent)
    : Pressable(parent), message_(scheduler), messageWidth_(this, springs::standard, [this](double) {
          updateGeometry();
          if (widthChanged_) widthChanged_();
          update();
      }) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    message_.onChanged([this] {
        setAccessibleDescription(message_.text().trimmed());
        const int text = QFontMetrics(sansFont(footnote)).horizontalAdvance(message_.text());
        messageWidth_.moveTo(text == 0 ? 0 : messageGap + text);
        update();
    });
    QObject::connect(this, &QAbstractButton::clicked, this, [this, press = std::move(press)] {
        press([button = QPointer(this)](const QString& message) {
            if (button) button->message_.show(message);
        });
    });
}

QSize StatusButton::sizeHint() const {
    const QSize label = labelSize();
    const int message = static_cast<int>(std::lround(std::max(0.0, messageWidth_.value())));
    return {label.width() + message + 2 * ringRoom,
            std::max(label.height(), QFontMetrics(sansFont(footnote)).height()) + 2 * ringRoom};
}

QSize StatusButton::minimumSizeHint() const { return sizeHint(); }

void StatusButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ControlState state = Pressable::state();
    if (!state.enabled) painter.setOpacity(disabledOpacity);
    const QRect frame = rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const QSize label = labelSize();
    const QRect labelFrame(frame.left(), frame.top() + (state.pressed ? 1 : 0), label.width(), frame.height());
    paintLabel(painter, labelFrame, state);
    if (!message_.text().isEmpty()) {
        painter.setFont(sansFont(footnote));
        painter.setPen(palette::gold);
        const QRect room = frame.adjusted(label.width() + messageGap, 0, 0, 0);
        painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, message_.text());
    }
    if (state.focused) paintFocusRing(painter, labelFrame);
}

}  // namespace vantor
