#pragma once
// A floating window that never takes the focus. While it holds nothing it is transparent and lets every click through
// to the game. Main thread.

#include "ui/OverlayWindow.h"

namespace vantor {

class FloatWindow : public OverlayWindow {
public:
    FloatWindow(const QString& title, QSize size, bool movable, Prepare prepare);
};

}  // namespace vantor
