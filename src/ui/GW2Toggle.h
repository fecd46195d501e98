#pragma once
// A switch with its text, which wraps where it must. Main thread.

#include <QtGui/QPainter>
#include <memory>

#include "ui/ControlState.h"
#include "ui/Motion.h"
#include "ui/Pressable.h"
#include "ui/SettingBinding.h"

namespace vantor {

// The track and knob of a toggle.
class GW2ToggleStyle {
public:
    [[nodiscard]] static QSize size();
    // `position`: 0 off, 1 on, between while it moves.
    void paint(QPainter& painter, const QRectF& frame, const ControlState& state, double position) const;
};

class GW2Toggle : public Pressable {
public:
    GW2Toggle(const QString& text, QWidget* parent);

    // Shows the setting, follows it, and stores each change at once.
    void bind(Defaults& defaults, std::string_view key, bool byDefault);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    GW2ToggleStyle style_;
    Motion position_;
    std::unique_ptr<SettingBinding<bool>> binding_;
};

}  // namespace vantor
