#pragma once
// The watched events that are about to happen, over the game: a small torn panel, or nothing at all while there are
// none. It tells its window when it holds something and how large it is, and never reaches below its screen: what finds
// no room is counted. Main thread.

#include <QtGui/QColor>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>
#include <functional>

#include "timers/view/WatchedFeed.h"

namespace vantor {

class WatchedEventsView : public QWidget {
public:
    // Runs whenever the rows changed, with the size that they need; empty when there are none.
    using Fit = std::function<void(QSize size)>;

    WatchedEventsView(WatchedFeed& feed, Fit fit, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    // Whether it follows the events, shown or not: an empty one has no window to be shown in. At first it does not.
    void setFollowing(bool following);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Line {
        QString time;
        QString name;
        QString remaining;
        QColor nameColour;
        QRect frame;
        QRect nameFrame;
    };

    [[nodiscard]] static Line lineOf(const OccurrenceRow& row, int top);
    void follow();
    void keepToScreen();

    WatchedFeed& feed_;
    Fit fit_;
    std::vector<Line> lines_;
    QPixmap background_;
    Subscription rows_;
};

}  // namespace vantor
