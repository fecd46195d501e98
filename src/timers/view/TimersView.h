#pragma once
// The Timers tab: a search and the shown window of the timeline as rows. It looks at the clock once a second while it
// is shown, and not at all otherwise. Main thread.

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "data/WebApi.h"
#include "timers/AchievementNames.h"
#include "timers/TimersList.h"
#include "timers/WatchedEvents.h"
#include "timers/view/EmptyListView.h"
#include "timers/view/OccurrenceListView.h"
#include "timers/view/TimelineSource.h"
#include "ui/GW2TextField.h"

namespace vantor {

// What the tab is made of; what it refers to outlives the tab.
struct TimersNeeds {
    TimelineSource source;
    std::function<DataState()> state;                                                       // of the timeline
    std::function<std::shared_ptr<const std::vector<AchievementCompletition>>()> progress;  // of the events
    AchievementNames& names;
    std::function<QWidget*(const QString& chatLink, QWidget* parent)> makeWaypointButton;
    std::function<void(const std::string& page)> openWiki;
    // `clearSearch` is the tab's own.
    EmptyListActions emptyActions;
    // Beside the count where the times are old; empty where they are not.
    std::function<std::string()> aged{};
    std::function<bool()> progressKnown = [] { return true; };
};

class TimersView : public QWidget {
public:
    TimersView(TimersNeeds needs, QWidget* parent);

    // Cheap when nothing shown became different.
    void refresh();
    [[nodiscard]] OccurrenceListView& list() { return *list_; }
    // To the first event's eye, as soon as there is one; where none comes, to what helps.
    void leadToWatch();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void readProgress();
    void showCount(double windowMinutes);
    void showEmpty(EmptyReason reason, double windowMinutes);
    void arrive();
    [[nodiscard]] OccurrenceListView::Rows rows();

    TimersNeeds needs_;
    TimersList occurrences_;
    int now_ = 0;
    WatchedNames watched_;
    std::shared_ptr<const std::vector<AchievementCompletition>> progressSource_;
    ProgressById progress_;
    GW2TextField* search_;
    QLabel* count_;
    OccurrenceListView* list_;
    EmptyListView* empty_;
    bool leading_ = false;
    QTimer tick_{this};
    Subscription data_;
    Subscription settings_;
};

}  // namespace vantor
