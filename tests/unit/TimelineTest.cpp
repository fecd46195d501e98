#include "timers/Timeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "timers/DataFault.h"
#include "timers/TimeText.h"
#include "timers/VisibleWindow.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr TimerFilters timersOnly{.isTimer = true, .isEvent = false};
constexpr TimerFilters nothing{.isEvent = false};

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

// The rest of the rules is compared with an independent computation in tests/oracle.
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

TEST(Timeline, FiltersIncludeByTheirTests) {
    EventRewards achievements;
    achievements.achievements = {10, 11};
    const TimerFilters progressing{.isEvent = false, .hasAchievements = true};
    const AchievementCompletition done10{10, {}, 1, 1, true, {}, {}};
    struct {
        std::string_view what;
        EventRewards rewards;
        TimerFilters filters;
        std::vector<AchievementCompletition> progress;
        std::string category;
        bool included;
    } const table[] = {
        {"a name is no gap", {}, timersOnly, {}, "Core", false},
        {"one achievement open", achievements, progressing, {done10}, "Core", true},
        {"begun is not done", achievements, progressing, {done10, {11, {}, 0, 1, false, {}, {}}}, "Core", true},
        {"all done", achievements, progressing, {{11, {}, 1, 1, true, {}, {}}, done10}, "Core", false},
        {"special elsewhere", {}, {.isEvent = false, .isSpecialEvent = true}, {}, "special events", false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.what);
        Event one = event(1, "");
        one.rewards = row.rewards;
        auto only = section(3, {one}, {}, {{1, 2000}});
        only.category = row.category;
        EXPECT_EQ(computed({only}, row.filters, 0, row.progress).events.size(), row.included ? 1U : 0U);
    }
}

TEST(Timeline, CollectsTheAchievementsOfActiveSectionsWhateverIsShown) {
    Event both = event(1, "Boss");
    both.rewards = EventRewards{};
    both.rewards->achievements = {5, 6};
    both.rewards->items_for_achievements = {{100, 7}};
    auto active = section(3, {both, event(2, "none"), both}, {}, {{2, 2000}});
    auto idle = active;
    idle.active = false;
    EXPECT_THAT(computed({idle, active}, nothing).achievementIds, ElementsAre(5, 6, 7, 5, 6, 7));
}

TEST(Timeline, BrokenSchedulesOfActiveSectionsAreFaultsThatNameTheStep) {
    const std::vector<Event> one{event(1, "Boss", 10)};
    struct {
        std::string_view what;
        EventsSection section;
        std::string_view place;  // empty for no fault
    } table[] = {
        {"step without its event", section(3, one, {{1, 5}, {2, 5}}, {{1, 2000}}), "sequences.partial[1]"},
        {"in the pattern", section(3, one, {}, {{1, 0}, {1, 5}, {9, 5}}), "sequences.pattern[2]"},
        {"no entries at all", section(3, {}, {}, {{1, 2000}}), "sequences.pattern[0]"},
        {"start overflows", section(3, one, {{1, most}, {1, 1}}, {{1, 2000}}), "sequences.partial[1]"},
        {"gathering overflows", section(3, one, {{1, -most}, {1, 5}}, {{1, 2000}}), "sequences.partial[1]"},
        {"empty pattern", section(3, one, {{1, 1440}}, {}), "sequences.pattern"},
        {"pattern of no length", section(3, one, {}, {{1, 0}}), "sequences.pattern"},
        {"pattern going back", section(3, one, {}, {{1, 5}, {1, -6}}), "sequences.pattern"},
        {"begins ages ago", section(3, one, {{1, -100'000'000'000}}, {{1, 1}}), "sequences.pattern[0]"},
    };
    for (auto& row : table) {
        SCOPED_TRACE(row.what);
        const auto result = computeTimeline(std::vector{row.section}, {}, timersOnly, 0);
        const auto* fault = std::get_if<TimelineFault>(&result);
        ASSERT_TRUE(fault);
        EXPECT_EQ(fault->stepPlace, row.place);
        EXPECT_EQ(fault->sectionId, 3);
        EXPECT_THAT(describe(*fault), ::testing::AllOf(::testing::HasSubstr("section 3 \"Section 3\""),
                                                       ::testing::HasSubstr(std::string(row.place) + ": ")));
        row.section.active = false;
        EXPECT_THAT(computed({row.section}).events, IsEmpty());
    }
    // Weeks ago is no fault: one step now, one for each minute from then to the end of the day.
    EXPECT_EQ(computed({section(3, one, {{1, -100'000}}, {{1, 1}})}).events.size(), 1U + 100'000 + 1441);
}

TEST(TimeText, TruncatesTowardZeroAndKeepsTheSign) {
    const double infinite = std::numeric_limits<double>::infinity();
    struct {
        double minutes;
        std::optional<std::string> text;
    } const table[] = {
        {0, "00:00"},
        {75.9999, "01:15"},
        {1440, "00:00"},
        {1530.5, "01:30"},
        {-0.5, "00:00"},
        {-14.9, "00:-14"},
        {-299.9693, "-4:-59"},
        {-1500, "-1:00"},
        {std::nextafter(0x1p63, 0), "16:04"},
        {-0x1p63, "-16:-8"},
        {0x1p63, std::nullopt},
        {infinite, std::nullopt},
        {-infinite, std::nullopt},
        {std::numeric_limits<double>::quiet_NaN(), std::nullopt},
    };
    for (const auto& row : table) EXPECT_EQ(timeText(row.minutes), row.text) << row.minutes;
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
    const auto at = [](double id, std::int64_t lfg) {
        auto scheduled = std::make_shared<ScheduledEvent>();
        scheduled->event.lfg = lfg;
        return TimelineEvent{id, 0, scheduled};
    };
    EXPECT_TRUE(isVisible(at(780.0102, 0), 600, 180));
    EXPECT_FALSE(isVisible(at(781.0102, 0), 600, 180));
    EXPECT_TRUE(isVisible(at(600.0001, 0), 600, 180)) << "the packed fraction keeps the start past its minute";
    EXPECT_FALSE(isVisible(at(599.9, 0), 600, 180));
    EXPECT_TRUE(isVisible(at(590.0102, 10), 600, 180)) << "gathering has passed, the start has not";
    EXPECT_FALSE(isVisible(at(590.0102, 9), 600, 180));
    EXPECT_TRUE(isVisible(at(605.0102, 0), 600, 10));
    EXPECT_FALSE(isVisible(at(611.0102, 0), 600, 10));
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(isVisible(at(noNumber, 0), 600, 180));
    EXPECT_FALSE(isVisible(at(700, 0), 600, noNumber));
}

TEST(TimeText, SaysHowLongItIsUntilAnEvent) {
    EXPECT_EQ(remainingText(0), "now");
    EXPECT_EQ(remainingText(120), "2 h");
    EXPECT_EQ(remainingText(125), "2 h 05 min");
}

}  // namespace
}  // namespace vantor
