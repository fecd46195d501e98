#include "timers/TimersList.h"

#include <gmock/gmock.h>

#include <set>

#include "timers/OccurrenceRow.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
    using enum RowPhase;
    std::vector<RowPhase> phases;
    for (std::size_t i = 0; i < list.size(); ++i) phases.push_back(list.phase(i));
    EXPECT_THAT(phases, ElementsAre(gathering, gathering, next, next, later));
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
    for (const char* across : {"octovineauric", "basinheart"}) EXPECT_THAT(found(across), IsEmpty()) << across;
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

TEST(TimersList, SaysWhyItIsEmptyInASentenceThatLeadsSomewhere) {
    TimersList list;
    std::set<std::string> sentences;
    const auto says = [&](DataState state, EmptyReason expected) {
        EXPECT_EQ(list.empty(state), expected);
        const EmptyWords words = emptyWords(expected, "timers", 90);
        EXPECT_EQ(words.remedy == EmptyRemedy::none, expected == EmptyReason::loading);
        EXPECT_EQ(words.action.empty(), expected == EmptyReason::loading);
        EXPECT_TRUE(sentences.insert(words.sentence).second) << words.sentence;
        return words.sentence;
    };
    says(DataState::noKey, EmptyReason::noKey);
    says(DataState::keyIsNew, EmptyReason::keyIsNew);
    says(DataState::keyRefused, EmptyReason::keyRefused);
    says(DataState::keyLacksScope, EmptyReason::keyLacksScope);
    says(DataState::loading, EmptyReason::loading);
    says(DataState::failed, EmptyReason::failed);
    list.search("nowhere");
    list.update(timelineOf({}), 600, 180);
    says(DataState::ready, EmptyReason::filtersExcludeAll);
    list.update(timelineOf({occurrence(500, "Past"), occurrence(900, "Far")}), 600, 180);
    EXPECT_THAT(says(DataState::ready, EmptyReason::nothingAhead), testing::HasSubstr("1.5 h"));
    list.update(timelineOf({occurrence(700, "Ahead")}), 600, 180);
    says(DataState::ready, EmptyReason::nothingFound);
    list.search("");
    list.update(timelineOf({occurrence(700, "Ahead")}), 600, 180);
    EXPECT_EQ(list.empty(DataState::ready), std::nullopt);
}

TEST(OccurrenceRow, HoldsEverythingThatIsShown) {
    TimelineEvent made = occurrence(610, "Dragon", 20);
    auto scheduled = std::make_shared<ScheduledEvent>(*made.scheduled);
    scheduled->event.chatlink = "[&BEwCAAA=]";
    scheduled->event.link = "Dragon (event)";
    scheduled->event.bg = {300, -5, 7, 9};
    const std::vector<std::int64_t> none;  // a list, though an empty one
    scheduled->event.rewards = EventRewards{none, {{1, 2}}, {{{5, 6}}}, none};
    made.scheduled = scheduled;

    const OccurrenceRow row = occurrenceRow(made, RowPhase::gathering, 600, true);
    EXPECT_EQ(row.chatlink, "[&BEwCAAA=]");
    EXPECT_EQ(row.wikiPage, "Dragon (event)");
    EXPECT_EQ(row.accent, (std::array{255, 0, 7}));
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

}  // namespace
}  // namespace vantor
