#pragma once
// Tabs in a column beside their pages. Main thread.

#include "ui/Tabber.h"

namespace vantor {

class VerticalTabber : public Tabber {
public:
    explicit VerticalTabber(QWidget* parent) : Tabber(Qt::Vertical, parent) {}
};

}  // namespace vantor
