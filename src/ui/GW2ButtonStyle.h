#pragma once
// The background of buttons: dark, worn, with a hairline of gold; red where a button is the one to press. Main thread.

#include <QtGui/QPainter>

#include "ui/ControlState.h"

namespace vantor {

class GW2ButtonStyle {
public:
    enum class Kind { standard, primary, quiet };

    explicit GW2ButtonStyle(Kind kind = Kind::standard) : kind_(kind) {}

    // The focus ring stands 2 px outside the frame.
    void paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const;
    [[nodiscard]] QColor textColour(const ControlState& state) const;

private:
    Kind kind_;
};

// What is disabled is drawn so.
inline constexpr double disabledOpacity = 0.45;

}  // namespace vantor
