#pragma once
// The track and knob of a toggle. Main thread.

#include <QtGui/QPainter>

#include "ui/ControlState.h"

namespace vantor {

class GW2ToggleStyle {
public:
    [[nodiscard]] static QSize size();
    // `position`: 0 off, 1 on, between while it moves.
    void paint(QPainter& painter, const QRectF& frame, const ControlState& state, double position) const;
};

}  // namespace vantor
