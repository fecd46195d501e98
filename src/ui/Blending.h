#pragma once
// Whether the desktop blends translucent windows with what lies below. Where it does not, as on X11 without a
// compositor, their translucent part is black, so a window is cut to its solid part. Main thread.

#include <QtCore/QEvent>
#include <QtWidgets/QWidget>

namespace vantor {

// Told by whoever asks the desktop; true until then. Each window of the program gets an event of the type
// blendingChanged() when it changes.
void setBlending(bool blends);
[[nodiscard]] bool isBlending();
[[nodiscard]] QEvent::Type blendingChanged();

// Cuts the window to what is more solid than not, or makes it whole again; as it stands, so once more after each
// change of its size. `parts`: QWidget::DrawChildren where the children draw it.
void cutToSolidPart(QWidget& window, QWidget::RenderFlags parts);

}  // namespace vantor
