#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/ApiRefusal.h"
#include "app/GameData.h"
#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "timers/AchievementBlock.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Known = AchievementNames::Known;

std::string named(std::int64_t id, const std::string& name) {
    return R"({"id":)" + std::to_string(id) + R"(,"name":")" + name +
           R"(","description":"","requirement":"","locked_text":"","type":"Default","flags":[]})";
}

// The real loaders over a session that answers when told to.
class AchievementNamesTest : public testing::Test {
protected:
    void settle() {
        do queue.runAll();
        while (mainThread.runAll() > 0);
    }
    void need(std::vector<std::int64_t> ids) {
        data.achievementNames().need(ids);
        settle();
    }
    void answer(std::optional<std::string> body) {
        ASSERT_TRUE(session.answer(std::move(body)));
        settle();
    }
    std::vector<std::string> urls() {
        std::vector<std::string> asked;
        for (const UrlRequest& request : session.requests()) asked.push_back(request.url);
        return asked;
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeClock clock;
    GameData data{{defaults,
                   session,
                   queue,
                   mainThread,
                   clock,
                   {"https://api", "https://static"},
                   [](const std::string&) {},
                   [](const std::string&) {}}};
    AchievementNames& names = data.achievementNames();
};

TEST_F(AchievementNamesTest, AsksForEachIdOnceAndNeverForTheWholeEndpoint) {
    need({});
    EXPECT_THAT(urls(), IsEmpty());
    need({1, 2, 1});
    EXPECT_EQ(names.known(1), Known::loading);
    // While an answer is on its way the rest waits; what was asked for is not asked for again.
    need({2, 3});
    need({3});
    EXPECT_THAT(urls(), ElementsAre("https://api/v2/achievements?ids=1,2"));
    EXPECT_EQ(names.known(3), Known::loading);

    answer("[" + named(1, "First") + "]");
    EXPECT_EQ(names.known(1), Known::yes);
    EXPECT_EQ(names.name(1), "First");
    EXPECT_EQ(names.known(2), Known::missed);
    EXPECT_EQ(names.known(3), Known::loading);
    answer(std::nullopt);
    EXPECT_EQ(names.known(3), Known::missed);

    need({1, 2, 3});
    EXPECT_EQ(names.known(9), Known::unasked);
    EXPECT_THAT(urls(), ElementsAre("https://api/v2/achievements?ids=1,2", "https://api/v2/achievements?ids=3"));
}

TEST_F(AchievementNamesTest, ARefusedKeyIsToldFromAServiceThatIsAway) {
    EXPECT_EQ(data.timersState(), DataState::noKey);
    defaults.put(settings::apiKey, "key");
    data.start();
    settle();
    EXPECT_EQ(data.timersState(), DataState::loading);
    EXPECT_EQ(data.bestiaryState(), DataState::loading);
    answer(R"({"text":"Invalid access token"})");
    EXPECT_EQ(data.timersState(), DataState::keyRefused);
    data.start();
    settle();
    answer(R"({"text":"requires scope progression"})");
    EXPECT_EQ(data.bestiaryState(), DataState::keyLacksScope);
    data.start();
    settle();
    answer("<html>502</html>");
    EXPECT_EQ(data.timersState(), DataState::failed);
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
    AchievementCompletition made;
    made.id = id;
    made.current = current;
    made.max = max;
    made.done = done;
    return made;
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
    const auto broken = record(1, 12, 0);
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
        {broken, AchievementState::started, "12 of 0", 0},
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

    EXPECT_TRUE(hasBlock(event));
    const std::vector<std::int64_t> none;
    event.rewards = EventRewards{none, none, std::vector<ItemForAchievement>(), none};
    EXPECT_FALSE(hasBlock(event));
    EXPECT_TRUE(achievementBlock(event, progress, names).isEmpty());
}

}  // namespace
}  // namespace vantor
