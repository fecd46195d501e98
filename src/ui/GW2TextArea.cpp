#include "ui/GW2TextArea.h"

#include <QtGui/QContextMenuEvent>
#include <QtGui/QFontMetrics>

#include "ui/FieldMenu.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;

}  // namespace

GW2TextArea::GW2TextArea(const QString& placeholder, QWidget* parent) : QPlainTextEdit(parent) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    // A frame that is never drawn, but keeps the scroll bar inside the background.
    setFrameShape(QFrame::Box);
    setLineWidth(ringRoom + 1);
    setFont(sansFont(14));
    setPalette(GW2TextFieldStyle::colours());
    viewport()->setAutoFillBackground(false);
    viewport()->setPalette(GW2TextFieldStyle::colours());
    setVerticalScrollBar(new SlimScrollBar(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAttribute(Qt::WA_Hover);
    // Tab goes to the next control, as everywhere.
    setTabChangesFocus(true);
    setViewportMargins(0, 3, 1, 3);
}

QSize GW2TextArea::minimumSizeHint() const {
    return {withText(100), 3 * QFontMetrics(font()).lineSpacing() + 2 * (ringRoom + 8)};
}

// The background belongs to the frame around the text, which the toolkit paints in the widget and not in its viewport.
bool GW2TextArea::event(QEvent* event) {
    if (event->type() == QEvent::Paint) {
        QPainter painter(this);
        ControlState state = ControlState::of(*this);
        state.focused = state.focused || hasFocus();
        if (!state.enabled) painter.setOpacity(disabledOpacity);
        style_.paintBackground(painter, QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom), state);
        return true;
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
    return QPlainTextEdit::event(event);
}

void GW2TextArea::contextMenuEvent(QContextMenuEvent* event) {
    openFieldMenu(*this, viewport()->mapTo(this, event->pos()));
}

}  // namespace vantor
