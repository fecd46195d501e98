#pragma once
// The floating icon, 32 by 32, that shows and hides the main window. Main thread.

#include <functional>

#include "ui/AccessibleControl.h"
#include "ui/OverlayWindow.h"

namespace vantor {

class IconWindow : public OverlayWindow, public SelfDescribing {
public:
    // openMenu: the right button was pressed at this place of the screen.
    IconWindow(std::function<void()> pressed, std::function<void(QPoint)> openMenu, Prepare prepare);

    [[nodiscard]] QAccessibleInterface* makeAccessible() override { return new AccessiblePressable(this, pressed_); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    std::function<void()> pressed_;
    std::function<void(QPoint)> openMenu_;
    bool hovered_ = false;
    bool down_ = false;
};

}  // namespace vantor
