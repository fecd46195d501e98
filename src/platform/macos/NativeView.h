#pragma once
// A view of the system's, placed in the toolkit's window. Main thread, after the application object.

class QWidget;

namespace vantor {

// The view stays its owner's, who outlives the widget; the caller adopts the widget.
[[nodiscard]] QWidget* widgetOfNativeView(void* view);

}  // namespace vantor
