#pragma once
// Soft fades over the four edges of the page. They belong to the page's own scene: whatever the window paints lies under
// the page. Main thread.

#include <QtWidgets/QWidget>

namespace vantor {

// Keeps fades over the widget that draws the page, for as long as that lives. Takes no events.
void fadeEdges(QWidget& drawing);

}  // namespace vantor
