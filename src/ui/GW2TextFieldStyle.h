#pragma once
// The sunken background of fields. Main thread.

#include <QtGui/QPainter>
#include <QtGui/QPalette>

#include "ui/ControlState.h"

namespace vantor {

class GW2TextFieldStyle {
public:
    void paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const;
    // Text, hint, selection.
    [[nodiscard]] static QPalette colours();
};

}  // namespace vantor
