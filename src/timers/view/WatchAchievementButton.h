#pragma once
// The toggle that marks an event as watched: an eye, over an amber glow from below when it is. Main thread.

#include <string>

#include "platform/Defaults.h"
#include "timers/view/RowButton.h"

namespace vantor {

class WatchAchievementButton : public RowButton {
public:
    // The settings keep the list of the watched events.
    WatchAchievementButton(Defaults& defaults, QWidget* parent);

    // spoken: the event as a row names it, with its time.
    void setEvent(const std::string& name, bool watched, const QString& spoken);

protected:
    void paintBackground(QPainter& painter, const QRectF& background) const override;

private:
    Defaults& defaults_;
    std::string name_;
};

}  // namespace vantor
