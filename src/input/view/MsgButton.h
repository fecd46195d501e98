#pragma once
// Runs an action and then shows a message. Main thread.

#include "input/view/StatusButton.h"

namespace vantor {

class MsgButton final : public StatusButton {
public:
    // `content` is the button's label.
    MsgButton(std::function<void()> action, const QString& message, QString content, Scheduler& scheduler,
              QWidget* parent);

protected:
    [[nodiscard]] QSize labelSize() const override;
    void paintLabel(QPainter& painter, const QRect& frame, const ControlState& state) const override;

private:
    QString content_;
};

}  // namespace vantor
