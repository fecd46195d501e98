// Progress and names: how they are loaded, and what is shown of them beside an event and in the bestiary.

#include <gmock/gmock.h>

#include <numeric>

#include "app/ApiRefusal.h"
#include "app/GameData.h"
#include "fake/FakeClock.h"
#include "timers/AchievementBlock.h"
#include "timers/Bestiary.h"
#include "unit/Services.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Known = AchievementNames::Known;

std::string named(std::int64_t id, const std::string& name) {
    return R"({"id":)" + std::to_string(id) + R"(,"name":")" + name +
           R"(","description":"","requirement":"","locked_text":"","type":"Default","flags":[]})";
}

class AchievementNamesTest : public testing::Test, protected Services {
protected:
    void need(std::vector<std::int64_t> ids) {
        names.need(ids);
        settle();
    }

    FakeClock clock;
    GameData data{{defaults, session, queue, mainThread, clock, {"https://api", "https://static"}, print, print}};
    AchievementNames& names = data.achievementNames();
};

TEST_F(AchievementNamesTest, AsksForEachIdOnceAndNeverForTheWholeEndpoint) {
    need({});
    EXPECT_THAT(asked(), IsEmpty());
    need({1, 2, 1});
    EXPECT_EQ(names.known(1), Known::loading);
    // While an answer is on its way the rest waits; what was asked for is not asked for again.
    need({2, 3});
    need({3});
    EXPECT_THAT(asked(), ElementsAre("https://api/v2/achievements?ids=1,2"));
    EXPECT_EQ(names.known(3), Known::loading);

    answer("[" + named(1, "First") + "]");
    EXPECT_THAT(asked(), ElementsAre("https://api/v2/achievements?ids=3"));
    EXPECT_EQ(names.name(1), "First");
    EXPECT_EQ(names.known(2), Known::missed);
    EXPECT_EQ(names.known(3), Known::loading);
    answer(std::nullopt);
    EXPECT_EQ(names.known(3), Known::missed);
    need({1, 2, 3});
    EXPECT_EQ(names.known(9), Known::unasked);
    EXPECT_THAT(asked(), IsEmpty());
}

// More than one request holds: the names come with the last of them.
TEST_F(AchievementNamesTest, WaitsForEveryBatchOfAnAnswer) {
    std::vector<std::int64_t> ids(201);
    std::iota(ids.begin(), ids.end(), 1);
    need(ids);
    need({500});
    EXPECT_EQ(asked().size(), 2U);
    answer("[" + named(1, "First") + "]");
    EXPECT_EQ(names.known(1), Known::yes);
    EXPECT_EQ(names.known(2), Known::loading);
    EXPECT_THAT(asked(), IsEmpty());
    answer("[" + named(201, "Last") + "]");
    EXPECT_EQ(names.known(2), Known::missed);
    EXPECT_THAT(asked(), ElementsAre("https://api/v2/achievements?ids=500"));
}

TEST_F(AchievementNamesTest, TellsWhyThereIsNothingToShow) {
    const auto states = [&] { return std::pair(data.timersState(), data.bestiaryState()); };
    const auto both = [](DataState state) { return std::pair(state, state); };
    data.start();
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_EQ(states(), both(DataState::noKey));
    storeKey("key");
    EXPECT_EQ(states(), both(DataState::keyIsNew));
    const std::pair<const char*, DataState> refusals[] = {
        {R"({"text":"Invalid access token"})", DataState::keyRefused},
        {R"({"text":"requires scope progression"})", DataState::keyLacksScope},
        {"<html>502</html>", DataState::failed}};
    for (const auto& [body, state] : refusals) {
        data.restart();
        EXPECT_EQ(states(), both(DataState::loading)) << "before it has begun";
        settle();
        EXPECT_EQ(states(), both(DataState::loading));
        answer(body);
        EXPECT_EQ(states(), both(state)) << body;
    }
    data.restart();
    settle();
    answer("[]");
    EXPECT_EQ(states(), both(DataState::loading)) << "the catalogue is on its way";
    answer("{");
    EXPECT_EQ(states(), std::pair(DataState::failed, DataState::loading));
    answer(R"([{"id": "x", "races": []}])");
    EXPECT_EQ(states(), std::pair(DataState::failed, DataState::ready));
}

TEST_F(AchievementNamesTest, TheTimesComeWithoutAKeyOnceThePlayerWantsThatAndAKeyTakesTheirPlace) {
    const std::vector<std::string> catalogues{"https://static/events.json", "https://static/categories/beasts.json"};
    data.start();
    settle();
    data.showWithoutProgress();
    EXPECT_EQ(asked(), catalogues);
    EXPECT_EQ(data.timersState(), DataState::loading);
    answer("[]");
    answer(R"([{"id":"animals","races":[]}])");
    EXPECT_EQ(data.timersState(), DataState::ready);
    EXPECT_EQ(progressLook({}, 1, data.progressKnown()).text, "needs your key");
    data.start();
    EXPECT_EQ(asked(), catalogues) << "remembered";
    answer(std::nullopt);
    answer(std::nullopt);
    storeKey("key");
    data.restart();
    EXPECT_THAT(asked(), ElementsAre("https://api/v2/account/achievements"));
    answer("[]");
    EXPECT_EQ(progressLook({}, 1, data.progressKnown()).text, "not started");
}

TEST(ApiRefusal, ReadsOnlyTheErrorObject) {
    EXPECT_EQ(keyRefusal(" {\"text\":\"Invalid Access Token\"}"), KeyAnswer::refused);
    EXPECT_EQ(keyRefusal(R"({"text":"invalid key"})"), KeyAnswer::refused);
    EXPECT_EQ(keyRefusal(R"({"text":"requires scope account"})"), KeyAnswer::lacksScope);
    for (const char* body :
         {"", "[]", R"([{"text":"invalid key"}])", R"({"text":"too many requests"})", R"({"text":5})", "{", "null"})
        EXPECT_EQ(keyRefusal(body), std::nullopt) << body;
}

AchievementCompletition record(std::int64_t id, std::int64_t current, std::int64_t max, bool done = false) {
    return {.id = id, .bits = {}, .current = current, .max = max, .done = done, .unlocked = {}, .repeated = {}};
}

TEST(AchievementBlock, TellsEveryKindOfProgress) {
    auto bits = record(1, 0, 7);
    bits.bits = {{0, 4}};
    auto locked = record(1, 3, 7);
    locked.unlocked = false;
    auto again = record(1, 0, 7);
    again.repeated = 3;
    auto twice = record(1, 7, 7, true);
    twice.repeated = 1;
    struct {
        AchievementCompletition progress;
        AchievementState state;
        const char* text;
        double part;
    } const table[] = {
        {record(1, 0, 100), AchievementState::notStarted, "not started", 0},
        {record(1, 1250, 5000), AchievementState::started, "1,250 of 5,000", 0.25},
        {record(1, 5000, 5000, true), AchievementState::done, "done", 1},
        {bits, AchievementState::started, "2 parts of 7", 2.0 / 7},
        {locked, AchievementState::started, "locked", 3.0 / 7},
        {again, AchievementState::started, "0 of 7, repeated 3 times", 0},
        {twice, AchievementState::done, "done, repeated once", 1},
        {record(1, 12, 0), AchievementState::started, "12 of 0", 0},
    };
    for (const auto& row : table) {
        EXPECT_EQ(achievementState(&row.progress), row.state) << row.text;
        EXPECT_EQ(progressText(&row.progress), row.text);
        EXPECT_DOUBLE_EQ(progressPart(&row.progress), row.part) << row.text;
    }
    EXPECT_EQ(progressText(nullptr), "not started");
    EXPECT_EQ(countText(-1234567), "-1,234,567");
    EXPECT_EQ(countText(-123), "-123");
}

TEST(AchievementBlock, ShowsOpenAchievementsFirstAndItemsByKindAndCount) {
    Event event;
    event.rewards = EventRewards{{{10, 11, 10}}, {{500}}, {{{600, 11}, {601, 12}, {602, 12}}}, {{700, 701}}};
    std::vector<std::vector<std::int64_t>> fetched;
    AchievementNames names([&](std::vector<std::int64_t> ids) { fetched.push_back(std::move(ids)); });
    names.need(achievementIds(event));
    EXPECT_THAT(fetched, ElementsAre(ElementsAre(10, 11, 12)));

    const auto progress = progressById({record(10, 1, 1, true), record(12, 4, 9)});
    EXPECT_EQ(achievementBlock(event, progress, names).achievements[0].title, "Loading the name\u2026");
    Achievement second;
    second.id = 12;
    second.name = "Collector";
    names.loaded({second}, false);

    const AchievementBlock block = achievementBlock(event, progress, names);
    EXPECT_THAT(block.achievements,
                ElementsAre(AchievementLine{11, "Achievement 11", false, AchievementState::notStarted, "not started", 0,
                                            "collection: 1 item drops here"},
                            AchievementLine{12, "Collector", true, AchievementState::started, "4 of 9", 4.0 / 9,
                                            "collection: 2 items drop here"},
                            AchievementLine{10, "Achievement 10", false, AchievementState::done, "done", 1, ""}));
    EXPECT_THAT(block.items, ElementsAre("1 guaranteed item", "2 lucky drops", "3 collection items"));
    EXPECT_EQ(block.note, "2 names could not be loaded");

    const std::vector<std::int64_t> none;
    const EventRewards empty{none, none, std::vector<ItemForAchievement>(), none};
    event.rewards = empty;
    EXPECT_FALSE(hasBlock(event));
    EXPECT_TRUE(achievementBlock(event, progress, names).isEmpty());
    // Each kind by itself is something to open.
    const auto only = [&](const auto& fill) {
        event.rewards = empty;
        fill(*event.rewards);
        return hasBlock(event);
    };
    EXPECT_TRUE(only([](EventRewards& rewards) { rewards.achievements = {{1}}; }));
    EXPECT_TRUE(only([](EventRewards& rewards) { rewards.items = {{1}}; }));
    EXPECT_TRUE(only([](EventRewards& rewards) { rewards.items_for_achievements = {{{1, 2}}}; }));
    EXPECT_TRUE(only([](EventRewards& rewards) { rewards.random_items = {{1}}; }));
}

TEST(Bestiary, TellsCompletedOpenAndUntrackedFamiliesApartAndIsNarrowedByTheSearch) {
    const auto race = [](std::string id, std::optional<std::int64_t> unlock, std::string description) {
        return BeastRace{std::move(id), "icon", std::move(description), unlock, "Kill many."};
    };
    const std::vector<BeastCategory> categories{
        {"animals",
         {race("bat", 1, "Winged hunters of the dark."), race("drake", 2, "Lives here."), race("cow", {}, "")}},
        {"undead", {race("sons_of_lich", 3, "")}},
        {"empty", {}}};
    const auto sections =
        bestiarySections(categories, progressById({record(1, 1000, 1000, true), record(2, 250, 1000)}), WordSearch());
    ASSERT_EQ(sections.size(), 2U);
    EXPECT_EQ(sections[0].done, 1U);
    EXPECT_EQ(sections[0].tracked, 2U);
    const auto& families = sections[0].families;
    ASSERT_EQ(families.size(), 3U);
    EXPECT_EQ(families[0].state, AchievementState::done);
    EXPECT_EQ(families[1].progress, "250 of 1,000");
    EXPECT_DOUBLE_EQ(families[1].part, 0.25);
    EXPECT_FALSE(families[2].tracked);
    EXPECT_EQ(families[2].progress, "");
    EXPECT_EQ(sections[1].families[0].progress, "not started");

    const std::pair<const char*, const char*> searches[] = {{"BAT", "bat "},
                                                            {"dark winged", "bat "},
                                                            {"animals lives", "drake "},
                                                            {"kill", "bat drake cow sons_of_lich "},
                                                            {"dragon", ""},
                                                            {"of lich sons", "sons_of_lich "}};
    for (const auto& [query, expected] : searches) {
        std::string ids;
        for (const BestiarySection& section : bestiarySections(categories, {}, WordSearch(query)))
            for (const BestiaryFamily& family : section.families) ids += family.id + " ";
        EXPECT_EQ(ids, expected) << query;
    }
}

}  // namespace
}  // namespace vantor
