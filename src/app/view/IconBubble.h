#pragma once
// Beside the floating icon at the very first start: what the icon does. A click puts it away. Main thread.

#include <functional>

#include "ui/AccessibleControl.h"
#include "ui/OverlayWindow.h"

namespace vantor {

class IconBubble : public OverlayWindow, public SelfDescribing {
public:
    // Sized to its words; its tip points to the left.
    IconBubble(std::function<void()> pressed, Prepare prepare);

    [[nodiscard]] QAccessibleInterface* makeAccessible() override { return new AccessiblePressable(this, pressed_); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    std::function<void()> pressed_;
};

}  // namespace vantor
