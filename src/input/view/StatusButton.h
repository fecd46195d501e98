#pragma once
// What WaypointButton and MsgButton share: a plain button whose status message unrolls beside its label. Its width
// follows the text along a spring. Main thread.

#include <functional>
#include <string>

#include "input/StatusMessage.h"
#include "ui/Motion.h"
#include "ui/Pressable.h"

namespace vantor {

class StatusButton : public Pressable {
public:
    [[nodiscard]] const QString& btnText() const { return message_.text(); }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    // Runs after its wish for room changed, for hosts that place it by hand.
    void onWidthChanged(std::function<void()> handler) { widthChanged_ = std::move(handler); }

protected:
    // Does nothing once the button has gone.
    using Show = std::function<void(const QString& message)>;
    // `press` does what the button is for and shows a message, at once or later.
    StatusButton(Scheduler& scheduler, std::function<void(const Show& show)> press, QWidget* parent);

    // Of the label, without the message.
    [[nodiscard]] virtual QSize labelSize() const = 0;
    virtual void paintLabel(QPainter& painter, const QRect& frame, const ControlState& state) const = 0;

    void paintEvent(QPaintEvent* event) override;

private:
    StatusMessage message_;
    Motion messageWidth_;
    std::function<void()> widthChanged_;
};

}  // namespace vantor
