#include "timers/WatchedEvents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>

#include "data/SettingKeys.h"
#include "platform/fake/FakeDefaults.h"
#include "timers/TimeText.h"
#include "timers/Timeline.h"
#include "timers/VisibleWindow.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
    [[nodiscard]] std::string text(Seconds at) const {
        return QDateTime::fromSecsSinceEpoch(at, zone_).toString(QStringLiteral("dd HH:mm:ss")).toStdString();
    }

private:
    QTimeZone zone_;
};

// "Boss" every two hours from 00:00 UTC, where players gather ten minutes early; "Other" in between.
std::vector<TimelineEvent> timelineAt(int offsetSeconds) {
    Event boss;
    boss.id = 7;
    boss.name = "Boss";
    boss.lfg = 10;
    Event other;
    other.id = 8;
    other.name = "Other";
    EventsSection section;
    section.id = 3;
    section.active = true;
    section.segments = {boss, other};
    section.sequences.pattern = {{7, 60}, {8, 60}};
    auto computed = computeTimeline({&section, 1}, {}, {.isTimer = true, .isEvent = false}, offsetSeconds);
    return std::get<Timeline>(computed).events;
}

std::vector<std::string> startsShown(const ZoneClock& clock, Clock::Seconds at, const WatchedNames& names = {"Boss"}) {
    std::vector<std::string> starts;
    for (const TimelineEvent& occurrence :
         watchedOccurrences(timelineAt(clock.utcOffsetSeconds(at)), names, currentMinute(clock, at), 3))
        starts.push_back(startText(occurrence).value_or("?"));
    return starts;
}

TEST(WatchedEvents, KeepTheNamesInTheirStoredForm) {
    FakeDefaults defaults;
    EXPECT_THAT(readWatchedNames(defaults), IsEmpty());
    ASSERT_EQ(toggleWatched(defaults, "Night \"bosses\""), Defaults::Verdict::stored);
    ASSERT_EQ(toggleWatched(defaults, "Łódź"), Defaults::Verdict::stored);
    EXPECT_EQ(defaults.get<std::string>(settings::watching), R"(["Night \"bosses\"","Łódź"])");
    EXPECT_THAT(readWatchedNames(defaults), ElementsAre("Night \"bosses\"", "Łódź"));
    ASSERT_EQ(toggleWatched(defaults, "Night \"bosses\""), Defaults::Verdict::stored);
    ASSERT_EQ(toggleWatched(defaults, "Łódź"), Defaults::Verdict::stored);
    EXPECT_EQ(defaults.get<std::string>(settings::watching), "[]");

    // Only the first of equal names goes; the others keep their order.
    EXPECT_THAT(withToggled({"b", "a", "b"}, "b"), ElementsAre("a", "b"));
    EXPECT_THAT(withToggled({"b"}, "B"), ElementsAre("b", "B"));

    for (const SettingValue& damaged :
         {SettingValue("[1]"), SettingValue("{}"), SettingValue("no list"), SettingValue(true)}) {
        defaults.put(settings::watching, damaged);
        EXPECT_THAT(readWatchedNames(defaults), IsEmpty());
    }
    defaults.put(settings::watching, "no list");
    ASSERT_EQ(toggleWatched(defaults, "Boss"), Defaults::Verdict::stored);
    EXPECT_EQ(defaults.get<std::string>(settings::watching), R"(["Boss"])");
}

TEST(WatchedEvents, EnterAndLeaveAtTheirMinutes) {
    // The boss of 600 gathers at 590: within 10 minutes from 580 on (590.03 < 580 + 10 + 1), gone at 600.
    const auto timeline = timelineAt(0);
    const auto count = [&](double now, const WatchedNames& names) {
        return watchedOccurrences(timeline, names, now, 10).size();
    };
    EXPECT_EQ(count(579, {"Boss"}), 0U);
    EXPECT_EQ(count(580, {"Boss"}), 1U);
    EXPECT_EQ(count(599, {"Boss"}), 1U);
    // 600.03 with its fraction is still ahead in the minute 600 itself.
    EXPECT_EQ(count(600, {"Boss"}), 1U);
    EXPECT_EQ(count(601, {"Boss"}), 0U);
    EXPECT_EQ(count(655, {"Boss", "Other"}), 1U);
    EXPECT_EQ(count(655, {}), 0U);
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
        ASSERT_TRUE(next) << clock.text(at);
        ASSERT_GT(*next, at);
        for (Clock::Seconds between = at; between < *next; between += 20)
            ASSERT_EQ(shown(between), shown(at)) << clock.text(between);
        const bool zoneChanged = clock.utcOffsetSeconds(*next) != offset;
        EXPECT_TRUE(zoneChanged || shown(*next) != shown(at)) << clock.text(*next);
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
}

TEST(WatchedEvents, AreShownAcrossLocalMidnightAndTheChangeOfTheZone) {
    struct {
        const char* zone;
        const char* local;
        std::vector<std::string> shown;
    } const table[] = {
        // The occurrence of 02:00 local is 00:00 UTC; the one of 00:00 local is 22:00 UTC of the day before.
        {"Etc/GMT-2", "2026-01-10 23:46:59", {}},
        {"Etc/GMT-2", "2026-01-10 23:47:00", {"00:00"}},
        {"Etc/GMT-2", "2026-01-11 00:00:59", {"00:00"}},
        {"Etc/GMT-2", "2026-01-11 00:01:00", {}},
        {"Etc/GMT-2", "2026-01-11 01:47:00", {"02:00"}},
        {"Asia/Kolkata", "2026-01-10 23:16:59", {}},
        {"Asia/Kolkata", "2026-01-10 23:17:00", {"23:30"}},
        {"Asia/Kolkata", "2026-01-10 23:31:00", {}},
        {"Asia/Kolkata", "2026-01-11 01:17:00", {"01:30"}},
        {"America/Bogota", "2026-01-10 00:47:00", {"01:00"}},  // UTC-5
        {"America/Bogota", "2026-01-10 01:01:00", {}},
        {"America/Bogota", "2026-01-10 18:47:00", {"19:00"}},
        // 02:00 becomes 03:00 at 01:00 UTC: the boss of 02:00 UTC begins at 04:00 by the new clock.
        {"Europe/Berlin", "2026-03-29 00:47:00", {"01:00"}},
        {"Europe/Berlin", "2026-03-29 03:46:00", {}},
        {"Europe/Berlin", "2026-03-29 03:47:00", {"04:00"}},
        {"Europe/Berlin", "2026-03-29 04:01:00", {}},
    };
    for (const auto& row : table) {
        const ZoneClock clock(row.zone);
        EXPECT_EQ(startsShown(clock, clock.moment(row.local)), row.shown) << row.zone << " " << row.local;
    }
}

TEST(WatchedEvents, NothingToWaitFor) {
    const ZoneClock clock("UTC");
    EXPECT_FALSE(nextWatchedChange(timelineAt(0), {}, 3, clock, 0));
    EXPECT_FALSE(nextWatchedChange(timelineAt(0), {"Gone from the catalogue"}, 3, clock, 0));
    EXPECT_FALSE(nextWatchedChange({}, {"Boss"}, 3, clock, 0));
}

}  // namespace
}  // namespace vantor
