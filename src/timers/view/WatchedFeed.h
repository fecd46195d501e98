#pragma once
// The occurrences of watched events that are about to happen, kept up to date while somebody listens. It looks at the
// clock once a second while there are any; otherwise it rests until the next moment that could change that, and without
// a watched event it does not look at all. Main thread; it outlives its listeners.

#include <QtCore/QTimer>
#include <vector>

#include "base/Notice.h"
#include "timers/OccurrenceRow.h"
#include "timers/view/TimelineSource.h"

namespace vantor {

class WatchedFeed {
public:
    explicit WatchedFeed(TimelineSource source);
    WatchedFeed(const WatchedFeed&) = delete;
    WatchedFeed& operator=(const WatchedFeed&) = delete;

    [[nodiscard]] const std::vector<OccurrenceRow>& rows() const { return rows_; }
    // The text of a badge: how many there are, empty for none.
    [[nodiscard]] QString badgeText() const;
    // After a change of the rows. The first listener brings the rows up to date before this returns.
    [[nodiscard]] Subscription observe(Notice::Handler handler);
    // Of a listener that is about to look; also sets the next look at the clock.
    void refresh();

    // How long it rests now; nothing while it does not look at the clock at all.
    [[nodiscard]] std::optional<std::chrono::milliseconds> rest() const;

private:
    void rest(std::optional<Clock::Seconds> nextChange);

    TimelineSource source_;
    std::vector<OccurrenceRow> rows_;
    Notice changed_;
    int listeners_ = 0;
    QTimer timer_;
    Subscription data_;
    Subscription settings_;
};

}  // namespace vantor
