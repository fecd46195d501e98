#pragma once
// Beside an event with a chat link: a click copies the link, a click with Shift held types it into the game. Main
// thread.

#include "input/ChatLink.h"
#include "input/view/StatusButton.h"

namespace vantor {

class WaypointButton final : public StatusButton {
public:
    WaypointButton(const QString& chatLink, const ChatLinkNeeds& needs, Scheduler& scheduler, QWidget* parent);

protected:
    [[nodiscard]] QSize labelSize() const override;
    void paintLabel(QPainter& painter, const QRect& frame, const ControlState& state) const override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool clickedWithShift_ = false;
};

}  // namespace vantor
