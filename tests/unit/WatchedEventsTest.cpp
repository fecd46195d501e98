#include "timers/WatchedEvents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>

#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
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
        for (Clock::Seconds between = at; between < *next; between += 20) {
            ASSERT_EQ(shown(between), shown(at)) << clock.text(between);
            ASSERT_EQ(clock.utcOffsetSeconds(between), offset) << clock.text(between);
        }
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

TEST(WatchedEvents, NothingToWaitFor) {
    const ZoneClock clock("UTC");
    EXPECT_FALSE(nextWatchedChange(timelineAt(0), {}, 3, clock, 0));
    EXPECT_FALSE(nextWatchedChange(timelineAt(0), {"Gone from the catalogue"}, 3, clock, 0));
    EXPECT_FALSE(nextWatchedChange({}, {"Boss"}, 3, clock, 0));
}

}  // namespace
}  // namespace vantor
