#include "timers/TimersList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "timers/DataFault.h"
#include "timers/OccurrenceRow.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TimelineEvent occurrence(std::int64_t start, std::string name, std::optional<std::int64_t> lfg = {},
                         std::string section = "World bosses", std::string category = "Core Tyria") {
    auto scheduled = std::make_shared<ScheduledEvent>();
    scheduled->event.name = std::move(name);
    scheduled->event.lfg = lfg;
    scheduled->sectionName = std::move(section);
    scheduled->sectionCategory = std::move(category);
    return {static_cast<double>(start - lfg.value_or(0)) + 0.0101, start, scheduled};
}

std::shared_ptr<const Timeline> timelineOf(std::vector<TimelineEvent> events) {
    return std::make_shared<const Timeline>(Timeline{std::move(events), {}});
}

std::vector<std::string> namesOf(const TimersList& list) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < list.size(); ++i) names.push_back(list.at(i).event().name);
    return names;
}

TEST(WordSearch, FindsWordsInAnyOrderWithoutCaseAndAccents) {
    const QString text = foldedForSearch("Düsterwald Łódź\nNoran’s Homestead\nŒuvre ﬁnale");
    for (const char* query : {"", "  ", "dusterwald", "DÜSTER", "lodz", "homestead düster", "noran's", "NORAN’S",
                              "oeuvre finale", "\u0064u\u0308ster"})
        EXPECT_TRUE(WordSearch(query).finds(text)) << query;
    for (const char* query : {"duster west", "lodznoran", "x"}) EXPECT_FALSE(WordSearch(query).finds(text)) << query;
    EXPECT_TRUE(WordSearch("   ").isEmpty());
}

TEST(TimersList, TellsGatheringNextAndLaterApart) {
    TimersList list;
    list.update(timelineOf({occurrence(610, "Gathers", 20), occurrence(600, "Starts now"), occurrence(640, "Next", 20),
                            occurrence(620, "Next too"), occurrence(700, "Later")}),
                600, 180);
    ASSERT_EQ(list.size(), 5U);
    std::vector<RowPhase> phases;
    for (std::size_t i = 0; i < list.size(); ++i) phases.push_back(list.phase(i));
    EXPECT_THAT(phases,
                ElementsAre(RowPhase::gathering, RowPhase::gathering, RowPhase::next, RowPhase::next, RowPhase::later));
    EXPECT_EQ(list.gathering(), 2U);
}

TEST(TimersList, SearchesEventSectionAndCategory) {
    TimersList list;
    const auto timeline = timelineOf({occurrence(610, "Octovine", {}, "Auric Basin", "Heart of Thorns"),
                                      occurrence(620, "Shadow Behemoth"), occurrence(630, "Métalique", {}, "Basin")});
    const auto found = [&](const char* query) {
        list.search(query);
        list.update(timeline, 600, 180);
        return namesOf(list);
    };
    EXPECT_THAT(found("thorns AURIC octo"), ElementsAre("Octovine"));
    EXPECT_THAT(found("basin"), ElementsAre("Octovine", "Métalique"));
    EXPECT_THAT(found("core tyria metal"), ElementsAre("Métalique"));
    EXPECT_THAT(found("basinheart"), IsEmpty());
    EXPECT_EQ(list.empty(DataState::ready), EmptyReason::nothingFound);
    EXPECT_FALSE(list.search(" Basinheart "));
    // The next timeline's events may lie where others were.
    auto reused = std::make_shared<ScheduledEvent>(*timeline->events[1].scheduled);
    TimelineEvent renamed{620.0101, 620, reused};
    list.search("behemoth");
    list.update(timelineOf({renamed}), 600, 180);
    EXPECT_EQ(list.size(), 1U);
    reused->event.name = "Golem";
    list.update(timelineOf({renamed}), 600, 180);
    EXPECT_THAT(namesOf(list), IsEmpty());
    EXPECT_TRUE(list.search(""));
}

TEST(TimersList, SaysWhyItIsEmpty) {
    TimersList list;
    for (const auto& [state, reason] :
         {std::pair(DataState::noKey, EmptyReason::noKey), std::pair(DataState::keyIsNew, EmptyReason::keyIsNew),
          std::pair(DataState::keyRefused, EmptyReason::keyRefused),
          std::pair(DataState::keyLacksScope, EmptyReason::keyLacksScope),
          std::pair(DataState::loading, EmptyReason::loading), std::pair(DataState::failed, EmptyReason::failed)})
        EXPECT_EQ(list.empty(state), reason);
    list.search("nowhere");
    list.update(timelineOf({}), 600, 180);
    EXPECT_EQ(list.empty(DataState::ready), EmptyReason::filtersExcludeAll);
    list.update(timelineOf({occurrence(500, "Past"), occurrence(900, "Far")}), 600, 180);
    EXPECT_EQ(list.empty(DataState::ready), EmptyReason::nothingAhead);
    list.update(timelineOf({occurrence(700, "Ahead")}), 600, 180);
    EXPECT_EQ(list.empty(DataState::ready), EmptyReason::nothingFound);
    list.search("");
    list.update(timelineOf({occurrence(700, "Ahead")}), 600, 180);
    EXPECT_EQ(list.empty(DataState::ready), std::nullopt);
}

TEST(EmptyWords, EachReasonHasItsSentenceAndLeadsSomewhere) {
    std::vector<std::string> sentences;
    for (const EmptyReason reason :
         {EmptyReason::noKey, EmptyReason::keyIsNew, EmptyReason::keyRefused, EmptyReason::keyLacksScope,
          EmptyReason::loading, EmptyReason::failed, EmptyReason::filtersExcludeAll, EmptyReason::nothingFound,
          EmptyReason::nothingAhead}) {
        const EmptyWords words = emptyWords(reason, "timers", 90);
        EXPECT_EQ(words.remedy == EmptyRemedy::none, words.action.empty());
        EXPECT_EQ(words.remedy == EmptyRemedy::none, reason == EmptyReason::loading);
        EXPECT_THAT(sentences, ::testing::Not(::testing::Contains(words.sentence)));
        sentences.push_back(words.sentence);
    }
    EXPECT_THAT(sentences.back(), ::testing::HasSubstr("1.5 h"));
}

TEST(OccurrenceRow, HoldsEverythingThatIsShown) {
    TimelineEvent made = occurrence(610, "Dragon", 20);
    auto scheduled = std::make_shared<ScheduledEvent>(*made.scheduled);
    scheduled->event.chatlink = "[&BEwCAAA=]";
    scheduled->event.link = "Dragon (event)";
    scheduled->event.bg = {300, -5, 7, 9};
    scheduled->event.rewards = EventRewards{std::vector<std::int64_t>(), {{1, 2}}, {{{5, 6}}}, {{3}}};
    made.scheduled = scheduled;

    const OccurrenceRow row = occurrenceRow(made, RowPhase::gathering, 600, true);
    EXPECT_EQ(row.time, "10:10");
    EXPECT_EQ(row.remaining, "gathering");
    EXPECT_EQ(row.place, "World bosses · Core Tyria");
    EXPECT_EQ(row.getThereBy, "get there by 09:50 to LFG");
    EXPECT_EQ(row.chatlink, "[&BEwCAAA=]");
    EXPECT_EQ(row.wikiPage, "Dragon (event)");
    EXPECT_EQ(row.accent, (std::array{255, 0, 7}));
    EXPECT_THAT(row.badges,
                ElementsAre(RewardBadge{"reward", "Guaranteed rewards"}, RewardBadge{"luck.blue", "Lucky drops"},
                            RewardBadge{"achievement", "Gain achievements"},
                            RewardBadge{"collection", "Drops active collection items"}));
    EXPECT_TRUE(row.opens);
    EXPECT_EQ(spokenText(row),
              "10:10, Dragon, gathering, World bosses · Core Tyria, get there by 09:50 to LFG, Guaranteed rewards, "
              "Lucky drops, Gain achievements, Drops active collection items, watched");

    const OccurrenceRow plain = occurrenceRow(occurrence(700, "", {}, "Day", ""), RowPhase::next, 600, false);
    EXPECT_EQ(spokenText(plain), "11:40, –, in 1 h 40 min, next, Day");
    EXPECT_FALSE(plain.opens);
    EXPECT_EQ(plain.accent, std::nullopt);
    EXPECT_EQ(occurrenceRow(occurrence(600, "Boss"), RowPhase::gathering, 600, false).remaining, "now");
}

TEST(OccurrenceRowDeathTest, StopsTheProgramForATimeThatCannotBeWritten) {
    TimelineEvent far = occurrence(0, "Boss", {}, "Far\naway");
    far.id = 1e300;
    EXPECT_EXIT((void)occurrenceRow(far, RowPhase::later, 0, false), ::testing::ExitedWithCode(dataFaultStatus),
                "^vantor: events catalogue, section \"Far away\", event 0: [^\n]+\n$");
}

}  // namespace
}  // namespace vantor
