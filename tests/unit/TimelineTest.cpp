// The day's timeline, where the independent computation in tests/oracle does not see it, its times, its window, and
// when the watched events change.

#include "timers/Timeline.h"

#include <gmock/gmock.h>

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>
#include <limits>
#include <set>

#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "timers/OccurrenceRow.h"
#include "timers/ShownTimeline.h"
#include "timers/TimeText.h"
#include "timers/VisibleWindow.h"
#include "timers/WatchedEvents.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr TimerFilters timersOnly{.isTimer = true, .isEvent = false};

Event event(std::int64_t id, std::string name, std::optional<std::int64_t> lfg = {}) {
    Event made;
    made.id = id;
    made.name = std::move(name);
    made.lfg = lfg;
    return made;
}

EventsSection section(std::int64_t id, std::vector<Event> segments, std::vector<EventTimelineData> partial,
                      std::vector<EventTimelineData> pattern) {
    EventsSection made;
    made.id = id;
    made.category = "Core";
    made.name = "Section " + std::to_string(id);
    made.active = true;
    made.segments = std::move(segments);
    made.sequences = {std::move(partial), std::move(pattern)};
    return made;
}

Timeline computed(const std::vector<EventsSection>& sections, const TimerFilters& filters = timersOnly, int offset = 0,
                  const std::vector<AchievementCompletition>& progress = {}) {
    auto result = computeTimeline(sections, progress, filters, offset);
    if (const auto* fault = std::get_if<TimelineFault>(&result)) {
        ADD_FAILURE() << describe(*fault);
        return {};
    }
    return std::get<Timeline>(std::move(result));
}

TEST(Timeline, KeepsEqualIdsInTheirOrderAndPacksTheGatheringMinuteOfTheFirstSegmentOfAnId) {
    const auto timeline = computed({section(9, {event(1, "second")}, {}, {{1, 2000}}),
                                    section(4, {event(1, "a", 10), event(1, "none")}, {}, {{1, 2000}}),
                                    section(4, {event(1, "b", 10)}, {}, {{1, 2000}})});
    std::vector<std::string> names;
    for (const TimelineEvent& occurrence : timeline.events) names.push_back(occurrence.event().name);
    EXPECT_THAT(names, ElementsAre("a", "b", "second"));
    EXPECT_EQ(timeline.events[0].id, 1 / 10000.0 + 4 / 100.0 + -10);
    EXPECT_EQ(timeline.events[0].startMinute, 0);
}

TEST(Timeline, LeavesOutWhatIsCompletedAndCollectsTheAchievementsOfActiveSections) {
    Event both = event(1, "");
    both.rewards = EventRewards{};
    both.rewards->achievements = {10, 11};
    both.rewards->items_for_achievements = {{100, 7}};
    auto active = section(3, {both, event(2, "none"), both}, {}, {{1, 2000}});
    auto idle = active;
    idle.active = false;
    const auto record = [](std::int64_t id, bool done) { return AchievementCompletition{id, {}, 1, 1, done, {}, {}}; };
    const std::pair<std::vector<AchievementCompletition>, bool> rows[] = {
        {{record(10, true)}, true},
        {{record(10, true), record(11, false)}, true},  // begun is not done
        {{record(11, true), record(10, true)}, false},
    };
    for (const auto& [progress, included] : rows) {
        const auto timeline = computed({idle, active}, {.isEvent = false, .hasAchievements = true}, 0, progress);
        EXPECT_EQ(timeline.events.size(), included ? 1U : 0U) << progress.size();
        EXPECT_THAT(timeline.achievementIds, ElementsAre(10, 11, 7, 10, 11, 7));
    }
}

TEST(Timeline, BrokenSchedulesOfActiveSectionsAreFaultsThatNameTheStep) {
    const std::vector<Event> one{event(1, "Boss", 10)};
    const std::pair<EventsSection, std::string> table[] = {
        {section(3, one, {{1, 5}, {2, 5}}, {{1, 2000}}), "sequences.partial[1]"},
        {section(3, one, {{1, most}, {1, 1}}, {{1, 2000}}), "sequences.partial[1]"},
        {section(3, one, {{1, -most}, {1, 5}}, {{1, 2000}}), "sequences.partial[1]"},
        {section(3, one, {{1, 1440}}, {}), "sequences.pattern"},
        {section(3, one, {}, {{1, 5}, {1, -5}}), "sequences.pattern"},
        {section(3, one, {{1, -100'000'000'000}}, {{1, 1}}), "sequences.pattern[0]"},
    };
    for (auto [broken, place] : table) {
        const auto result = computeTimeline(std::vector{broken}, {}, timersOnly, 0);
        const auto* fault = std::get_if<TimelineFault>(&result);
        ASSERT_TRUE(fault) << place;
        EXPECT_EQ(fault->stepPlace, place);
        EXPECT_THAT(describe(*fault),
                    testing::StartsWith("events catalogue, section 3 \"Section 3\", " + place + ": "));
        broken.active = false;
        EXPECT_THAT(computed({broken}).events, IsEmpty());
    }
    // Weeks ago is no fault: one step now, one for each minute from then to the end of the day.
    EXPECT_EQ(computed({section(3, one, {{1, -100'000}}, {{1, 1}})}).events.size(), 1U + 100'000 + 1441);
}

TEST(TimeText, TruncatesTowardZeroAndKeepsTheSign) {
    const std::pair<double, std::optional<std::string>> table[] = {
        {75.9999, "01:15"},
        {1530.5, "01:30"},
        {-14.9, "00:-14"},
        {-1500, "-1:00"},
        {std::nextafter(0x1p63, 0), "16:04"},
        {-0x1p63, "-16:-8"},
        {0x1p63, std::nullopt},
        {std::numeric_limits<double>::quiet_NaN(), std::nullopt},
    };
    for (const auto& [minutes, text] : table) EXPECT_EQ(timeText(minutes), text) << minutes;
}

TEST(TimeText, SaysHowLongItIsUntilAnEvent) {
    const std::pair<std::int64_t, const char*> rows[] = {
        {0, "now"}, {59, "59 min"}, {120, "2 h"}, {125, "2 h 05 min"}, {610, "10 h 10 min"}};
    for (const auto& [minutes, text] : rows) EXPECT_EQ(remainingText(minutes), text);
}

TEST(VisibleWindow, CurrentMinuteCountsTheSmallHoursToTheDayThatBeganYesterday) {
    EXPECT_EQ(currentMinute({10, 0, 0}, 7200), 600);
    EXPECT_EQ(currentMinute({1, 30, 0}, 7200), 1530);
    EXPECT_EQ(currentMinute({2, 0, 59}, 7200), 120);
    EXPECT_EQ(currentMinute({5, 15, 0}, 20700), 315) << "only whole hours of the offset count";
    EXPECT_EQ(currentMinute({4, 59, 0}, 20700), 1739);
    EXPECT_EQ(currentMinute({0, 10, 0}, -1800), 10) << "an offset of less than an hour west is none";
    EXPECT_EQ(currentMinute({0, 0, 0}, -18000), 0);
}

TEST(VisibleWindow, KeepsWhatHasNotStartedAndGathersSoon) {
    const auto shows = [](double id, std::int64_t lfg, double window) {
        auto scheduled = std::make_shared<ScheduledEvent>();
        scheduled->event.lfg = lfg;
        return isVisible({id, 0, scheduled}, 600, window);
    };
    EXPECT_TRUE(shows(780.0102, 0, 180));
    EXPECT_FALSE(shows(781.0102, 0, 180));
    EXPECT_FALSE(shows(781, 0, 180));
    EXPECT_TRUE(shows(600.0001, 0, 180)) << "the packed fraction keeps the start past its minute";
    EXPECT_FALSE(shows(600, 0, 180));
    EXPECT_TRUE(shows(590.0102, 10, 180)) << "gathering has passed, the start has not";
    EXPECT_FALSE(shows(590.0102, 9, 180));
    EXPECT_FALSE(shows(611.0102, 0, 10));
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(shows(noNumber, 0, 180));
    EXPECT_FALSE(shows(700, 0, noNumber));
}

constexpr Clock::Seconds minute = 60;

// Any moment of a real zone, with its changes of the offset.
class ZoneClock final : public Clock {
public:
    explicit ZoneClock(const char* zone) : zone_(zone) {}

    [[nodiscard]] Seconds now() const override { return 0; }
    [[nodiscard]] int utcOffsetSeconds(Seconds at) const override {
        return zone_.offsetFromUtc(QDateTime::fromSecsSinceEpoch(at, QTimeZone::utc()));
    }
    [[nodiscard]] LocalTime localTime(Seconds at) const override {
        const QTime time = QDateTime::fromSecsSinceEpoch(at, zone_).time();
        return {time.hour(), time.minute(), time.second()};
    }
    [[nodiscard]] Seconds moment(const char* local) const {
        QDateTime time = QDateTime::fromString(QLatin1StringView(local), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        time.setTimeZone(zone_);
        return time.toSecsSinceEpoch();
    }

private:
    QTimeZone zone_;
};

// "Boss" every two hours from 00:00 UTC, where players gather ten minutes early; "Other" in between.
std::vector<TimelineEvent> timelineAt(int offset) {
    return computed({section(3, {event(7, "Boss", 10), event(8, "Other")}, {}, {{7, 60}, {8, 60}})}, timersOnly, offset)
        .events;
}

// Section, event and moment of what the lists show.
using Shown = std::set<std::tuple<std::int64_t, std::int64_t, Clock::Seconds>>;

// Every minute of the two days from noon: all zones show what there is at that moment, and no negative times.
void expectTheSameAsInUtc(const char* zone, const char* from) {
    SCOPED_TRACE(zone);
    constexpr int window = 180;
    // The last pass of the second reaches far into the next day, and the third has a step of no length.
    const std::vector sections{section(3, {event(7, "Boss", 10), event(8, "Other")}, {}, {{7, 60}, {8, 60}}),
                               section(4, {event(1, "Long", 45)}, {{1, 30}}, {{1, 1000}}),
                               section(5, {event(1, "Night")}, {}, {{1, 0}, {1, 480}})};
    const Timeline utc = computed(sections);
    const ZoneClock clock(zone);
    const Clock::Seconds start = clock.moment(from) / minute * minute;
    std::optional<int> offset;
    Timeline shown;
    for (Clock::Seconds at = start; at < start + 48 * 60 * minute; at += minute) {
        if (offset != clock.utcOffsetSeconds(at)) {
            offset = clock.utcOffsetSeconds(at);
            shown = shownTimeline(computed(sections, timersOnly, *offset), *offset);
        }
        const int now = currentMinute(clock, at);
        Shown here;
        for (const TimelineEvent& each : visibleWindow(shown.events, now, window)) {
            const auto row = occurrenceRow(each, RowPhase::next, now, false);
            ASSERT_EQ((row.time + row.getThereBy).find('-'), std::string::npos) << row.time << row.getThereBy;
            const bool once =
                here.emplace(each.scheduled->sectionId, each.event().id, at + (each.startMinute - now) * minute).second;
            ASSERT_TRUE(once) << at << " " << each.id;
        }
        Shown expected;
        const Clock::Seconds midnight = at / (minutesPerDay * minute) * minutesPerDay * minute;
        for (const std::int64_t day : {-1, 0, 1})
            for (const TimelineEvent& each : utc.events) {
                const Clock::Seconds moment = midnight + (day * minutesPerDay + each.startMinute) * minute;
                const Clock::Seconds gathering = moment - each.event().lfg.value_or(0) * minute;
                if (each.startMinute < minutesPerDay && at <= moment && gathering <= at + window * minute)
                    expected.emplace(each.scheduled->sectionId, each.event().id, moment);
            }
        ASSERT_EQ(here, expected) << at;
    }
}

TEST(ShownTimeline, IsWholeAtEachMinuteInEachZone) {
    for (const char* zone : {"UTC", "America/St_Johns", "America/Sao_Paulo", "America/Caracas", "Pacific/Marquesas",
                             "Pacific/Honolulu", "Pacific/Pago_Pago", "Pacific/Kiritimati", "Asia/Kathmandu",
                             "Asia/Kolkata", "Asia/Tehran", "Asia/Yangon", "Asia/Tokyo", "Australia/Eucla"})
        expectTheSameAsInUtc(zone, "2026-01-10 12:00:00");
    for (const char* zone : {"America/New_York", "America/Los_Angeles", "America/Halifax", "America/Anchorage"}) {
        expectTheSameAsInUtc(zone, "2026-03-07 12:00:00");
        expectTheSameAsInUtc(zone, "2026-10-31 12:00:00");
    }
    for (const char* zone : {"Europe/Berlin", "Europe/London", "Europe/Athens", "Atlantic/Azores"}) {
        expectTheSameAsInUtc(zone, "2026-03-28 12:00:00");
        expectTheSameAsInUtc(zone, "2026-10-24 12:00:00");
    }
    for (const char* zone : {"Australia/Lord_Howe", "Australia/Adelaide", "Pacific/Chatham"}) {
        expectTheSameAsInUtc(zone, "2026-04-04 12:00:00");
        expectTheSameAsInUtc(zone, "2026-09-26 12:00:00");
    }
}

TEST(WatchedEvents, KeepTheNamesInTheirStoredForm) {
    FakeDefaults defaults;
    // Of equal names only the first goes, and the others keep their order. What is damaged is an empty list.
    const struct {
        SettingValue before;
        std::string toggled;
        std::string after;
    } rows[] = {
        {"[]", "Night \"bosses\"", R"(["Night \"bosses\""])"},
        {R"(["Night \"bosses\""])", "Łódź", R"(["Night \"bosses\"","Łódź"])"},
        {R"(["Łódź"])", "Łódź", "[]"},
        {R"(["b","a","b"])", "b", R"(["a","b"])"},
        {R"(["b"])", "B", R"(["b","B"])"},
        {"[1]", "Boss", R"(["Boss"])"},
        {"no list", "Boss", R"(["Boss"])"},
        {true, "Boss", R"(["Boss"])"},
    };
    for (const auto& row : rows) {
        defaults.put(settings::watching, row.before);
        ASSERT_EQ(toggleWatched(defaults, row.toggled), Defaults::Verdict::stored);
        EXPECT_EQ(defaults.get<std::string>(settings::watching), row.after);
    }
    EXPECT_THAT(readWatchedNames(defaults), ElementsAre("Boss"));
}

// Two days: the list changes at exactly the moments that nextWatchedChange names.
void expectChangesAreForeseen(const ZoneClock& clock, const char* from) {
    SCOPED_TRACE(from);
    Clock::Seconds at = clock.moment(from) + 17;
    const Clock::Seconds end = at + 48 * 60 * minute;
    int changes = 0;
    while (at < end) {
        const int offset = clock.utcOffsetSeconds(at);
        const auto timeline = timelineAt(offset);
        const auto shown = [&](Clock::Seconds moment) {
            return watchedOccurrences(timeline, {"Boss"}, currentMinute(clock, moment), 3);
        };
        const auto next = nextWatchedChange(timeline, {"Boss"}, 3, clock, at);
        ASSERT_TRUE(next) << at;
        ASSERT_GT(*next, at);
        for (Clock::Seconds between = at; between < *next; between += 20) {
            ASSERT_EQ(shown(between), shown(at)) << between;
            ASSERT_EQ(clock.utcOffsetSeconds(between), offset) << between;
        }
        const bool zoneChanged = clock.utcOffsetSeconds(*next) != offset;
        EXPECT_TRUE(zoneChanged || shown(*next) != shown(at)) << *next;
        at = *next;
        ++changes;
    }
    EXPECT_GE(changes, 40);  // twelve occurrences a day that enter and leave
}

TEST(WatchedEvents, TheNextChangeIsForeseenInEveryZone) {
    expectChangesAreForeseen(ZoneClock("UTC"), "2026-01-10 22:00:00");
    expectChangesAreForeseen(ZoneClock("Asia/Kolkata"), "2026-01-10 22:00:00");
    expectChangesAreForeseen(ZoneClock("Europe/Berlin"), "2026-03-28 12:00:00");
    expectChangesAreForeseen(ZoneClock("Europe/Berlin"), "2026-10-24 12:00:00");
    expectChangesAreForeseen(ZoneClock("Australia/Lord_Howe"), "2026-04-04 12:00:00");  // half an hour
    expectChangesAreForeseen(ZoneClock("Africa/Monrovia"), "1971-06-01 12:00:00");      // an offset with seconds
}

TEST(WatchedEvents, NothingToWaitFor) {
    const ZoneClock clock("UTC");
    EXPECT_FALSE(nextWatchedChange(timelineAt(0), {}, 3, clock, 0));
    EXPECT_FALSE(nextWatchedChange(timelineAt(0), {"Gone from the catalogue"}, 3, clock, 0));
    EXPECT_FALSE(nextWatchedChange({}, {"Boss"}, 3, clock, 0));
}

}  // namespace
}  // namespace vantor
