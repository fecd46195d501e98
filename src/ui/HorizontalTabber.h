#pragma once
// Tabs in a row over their pages. Main thread.

#include "ui/Tabber.h"

namespace vantor {

class HorizontalTabber : public Tabber {
public:
    explicit HorizontalTabber(QWidget* parent) : Tabber(Qt::Horizontal, parent) {}
};

}  // namespace vantor
