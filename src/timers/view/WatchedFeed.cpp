#include "timers/view/WatchedFeed.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "data/SettingKeys.h"
#include "timers/VisibleWindow.h"
#include "timers/WatchedEvents.h"

namespace vantor {

namespace {

using namespace std::chrono_literals;

// A timer stands still while the machine sleeps, and the player may set the clock.
constexpr std::chrono::seconds longestRest = 60s;

}  // namespace

WatchedFeed::WatchedFeed(TimelineSource source) : source_(std::move(source)) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { refresh(); });
    data_ = source_.observe([this] { refresh(); });
    settings_ = source_.defaults.observe([this](const std::string& key) {
        if (key == settings::watching || key == settings::timerWatchedWindowDuration) refresh();
    });
}

QString WatchedFeed::badgeText() const { return rows_.empty() ? QString() : QString::number(rows_.size()); }

Subscription WatchedFeed::observe(Notice::Handler handler) {
    if (++listeners_ == 1) refresh();
    // Shared, since a subscription is moved about.
    return Subscription([this, inner = std::make_shared<Subscription>(changed_.observe(std::move(handler)))] {
        inner->reset();
        if (--listeners_ == 0) timer_.stop();
    });
}

void WatchedFeed::refresh() {
    if (listeners_ == 0) return;
    source_.followZone();
    const WatchedNames names = readWatchedNames(source_.defaults);
    const auto timeline = names.empty() ? nullptr : source_.timeline();
    std::vector<OccurrenceRow> rows;
    if (timeline) {
        const Clock::Seconds at = source_.clock.now();
        const int now = currentMinute(source_.clock, at);
        const double minutes = windowMinutes(source_.defaults, WindowKind::watched);
        for (const TimelineEvent& occurrence : watchedOccurrences(timeline->events, names, now, minutes))
            rows.push_back(occurrenceRow(
                occurrence, occurrence.gatheringMinute() <= now ? RowPhase::gathering : RowPhase::next, now, true));
        if (rows.empty())
            rest(nextWatchedChange(timeline->events, names, minutes, source_.clock, at));
        else
            timer_.start(1s);
    } else {
        timer_.stop();
    }
    if (rows == rows_) return;
    rows_ = std::move(rows);
    changed_.announce();
}

std::optional<std::chrono::milliseconds> WatchedFeed::rest() const {
    if (!timer_.isActive()) return std::nullopt;
    return timer_.intervalAsDuration();
}

void WatchedFeed::rest(std::optional<Clock::Seconds> nextChange) {
    if (!nextChange) return timer_.stop();
    // At least a second: the wall clock's seconds and the timer's do not begin together.
    const std::chrono::seconds until(*nextChange - source_.clock.now());
    timer_.start(std::clamp<std::chrono::milliseconds>(until, 1s, longestRest));
}

}  // namespace vantor
