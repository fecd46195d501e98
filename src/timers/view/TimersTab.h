#pragma once
// The Timers tab: the visible window of the timeline as rows. It looks at the clock once a second while it is shown,
// and not at all otherwise. Main thread.

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListView>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "timers/Timeline.h"
#include "timers/view/TimerRowModel.h"
#include "ui/QuietText.h"

namespace vantor {

// Where the tab's content comes from; what it refers to outlives the tab.
struct TimersSource {
    struct Words {
        QString title;
        QString sentence;
    };

    const Clock& clock;
    const Defaults& defaults;
    std::function<std::shared_ptr<const Timeline>()> timeline;  // nothing before the first one
    std::function<Words()> whyNoTimeline;
    std::function<void()> beforeRefresh;  // at every look at the clock
};

class TimersTab : public QWidget {
public:
    TimersTab(TimersSource source, QWidget* parent);

    // Also when the source's content changed; cheap when nothing shown became different.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showWords(const TimersSource::Words& words);

    TimersSource source_;
    TimerRowModel model_;
    QListView* list_;
    QLabel* count_;
    QuietText* words_;
    QTimer tick_;
};

}  // namespace vantor
