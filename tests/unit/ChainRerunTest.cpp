// The data chain started again by a key that was accepted: in every place of the first run, from empty loaders, and
// with the newest key.

#include <gmock/gmock.h>

#include "data/DataChain.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string entry(int id) { return R"({"id":)" + std::to_string(id) + R"(,"current":1,"max":1,"done":true})"; }
const std::string sections =
    R"([{"id":1,"category":"c","name":"n","active":true,"link":"x","segments":[],
        "sequences":{"partial":[],"pattern":[]}}])";

class ChainRerunTest : public testing::Test {
protected:
    using Progress = JsonFetchable<AchievementCompletition>;

    void storeKey(const std::string& key) { defaults.put(settings::apiKey, key); }
    // What waits for an answer, as "path key", in the order of asking.
    [[nodiscard]] std::vector<std::string> since() {
        queue.runAll();
        std::vector<std::string> asked;
        const auto requests = session.requests();
        for (; seen < requests.size(); ++seen) {
            asked.push_back(requests[seen].url.substr(std::string("https://host").size()));
            for (const auto& [name, value] : requests[seen].headers) asked.back() += " " + value;
        }
        return asked;
    }
    void answer(std::optional<std::string> body, std::size_t place = 0) {
        queue.runAll();
        ASSERT_TRUE(session.answer(std::move(body), place));
        queue.runAll();
    }
    [[nodiscard]] static std::vector<std::int64_t> idsOf(const Progress& loader) {
        std::vector<std::int64_t> ids;
        for (const auto& each : *loader.snapshot().array) ids.push_back(each.id);
        return ids;
    }
    void answerWhole(int id) {
        answer("[" + entry(id) + "]");
        answer(sections);
        answer("[]");
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    std::vector<std::string> printed;
    LoaderContext context{queue, session, defaults, [this](const std::string& line) { printed.push_back(line); }};
    Progress all{context, "AchievementCompletition", "https://host/all", true, true};
    JsonFetchable<EventsSection> catalogue{context, "EventsSection", "https://host/events", false, true};
    JsonFetchable<BeastCategory> beasts{context, "BeastCategory", "https://host/beasts", false, true};
    Progress events{context, "AchievementCompletition", "https://host/all", true, true};
    Progress unlocks{context, "AchievementCompletition", "https://host/all", true, true};
    std::vector<std::string> computed;  // sections and progress that each timeline was computed from
    DataChain chain{queue, {all, catalogue, beasts, events, unlocks}, [this](const auto& list, const auto& progress) {
                        computed.push_back(std::to_string(list.size()) + " " + std::to_string(progress.size()));
                        return std::vector<std::int64_t>{1, 2};
                    }};
    std::size_t seen = 0;
};

TEST_F(ChainRerunTest, RunsFromEmptyLoadersOnceAllAreIdle) {
    storeKey("A");
    chain.start();
    EXPECT_THAT(since(), ElementsAre("/all Bearer A"));
    answerWhole(1);
    EXPECT_THAT(since(), ElementsAre("/events", "/beasts"));
    EXPECT_THAT(idsOf(events), ElementsAre(1));

    storeKey("B");
    chain.restart();
    EXPECT_THAT(since(), ElementsAre("/all Bearer B"));
    EXPECT_THAT(idsOf(all), IsEmpty());
    EXPECT_THAT(idsOf(events), IsEmpty());
    EXPECT_THAT(idsOf(unlocks), IsEmpty());
    EXPECT_THAT(*catalogue.snapshot().array, IsEmpty());
    EXPECT_THAT(*beasts.snapshot().array, IsEmpty());
    answerWhole(2);
    EXPECT_THAT(idsOf(all), ElementsAre(2));
    EXPECT_THAT(idsOf(events), ElementsAre(2));
    EXPECT_EQ(catalogue.snapshot().array->size(), 1U);
    // Each from one catalogue and without the progress of the key before.
    EXPECT_THAT(computed, ElementsAre("1 0", "1 0"));
    EXPECT_THAT(since(), ElementsAre("/events", "/beasts"));
}

TEST_F(ChainRerunTest, RunsOnceHoweverOftenItIsAskedForMeanwhile) {
    storeKey("A");
    chain.start();
    chain.restart();
    (void)since();
    answer("[" + entry(1) + "]");
    for (const char* key : {"B", "C"}) {
        storeKey(key);
        chain.restart();
    }
    EXPECT_THAT(since(), ElementsAre("/events", "/beasts"));
    answer(sections);
    EXPECT_THAT(since(), IsEmpty());  // the bestiary is still on its way
    answer("{");
    EXPECT_THAT(since(), ElementsAre("/all Bearer C"));
    answerWhole(3);
    EXPECT_THAT(since(), ElementsAre("/events", "/beasts"));
    EXPECT_EQ(session.waiting(), 0U);
}

TEST_F(ChainRerunTest, StartsAtOnceWhereTheStartHadNoKey) {
    chain.start();
    EXPECT_THAT(since(), IsEmpty());
    storeKey("A");
    chain.restart();
    EXPECT_THAT(since(), ElementsAre("/all Bearer A"));
}

// Three keys, accepted after any number of answers, which are data, none, or rubbish, the older and the newer first.
TEST_F(ChainRerunTest, TheNewestKeyWinsInEveryInterleaving) {
    const std::vector<std::optional<std::string>> firstAnswers{"[" + entry(1) + "]", std::nullopt, "{"};
    for (const auto& firstAnswer : firstAnswers) {
        for (std::size_t second = 0; second <= 4; ++second) {
            for (std::size_t third = second; third <= 7; ++third) {
                for (const bool newestFirst : {false, true}) {
                    SCOPED_TRACE(firstAnswer.value_or("no data") + " " + std::to_string(second) +
                                 std::to_string(third) + (newestFirst ? " newest first" : ""));
                    (void)since();
                    std::vector<std::string> waiting;
                    std::vector<std::string> loads;
                    storeKey("A");
                    chain.restart();
                    bool lastKeyGiven = false;
                    for (std::size_t answered = 0;; ++answered) {
                        for (const auto& [at, key] : {std::pair{second, "B"}, std::pair{third, "C"}}) {
                            if (at != answered) continue;
                            storeKey(key);
                            chain.restart();
                            lastKeyGiven = key == std::string("C");
                        }
                        for (const std::string& each : since()) {
                            waiting.push_back(each);
                            if (each.starts_with("/all")) loads.push_back(each.substr(5));
                        }
                        if (waiting.empty() && lastKeyGiven) break;
                        if (waiting.empty()) continue;
                        const std::size_t place = newestFirst ? waiting.size() - 1 : 0;
                        const std::string asked = waiting[place];
                        waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(place));
                        if (asked == "/all Bearer A")
                            answer(firstAnswer, place);
                        else if (asked == "/all Bearer B")
                            answer("[" + entry(2) + "]", place);
                        else if (asked == "/all Bearer C")
                            answer("[" + entry(1) + "," + entry(3) + "]", place);
                        else
                            answer(asked == "/events" ? sections : "[]", place);
                        ASSERT_LT(answered, 20U);
                    }
                    EXPECT_EQ(loads.back(), "Bearer C");
                    EXPECT_LE(loads.size(), 3U);
                    EXPECT_THAT(idsOf(all), ElementsAre(1, 3));
                    EXPECT_THAT(idsOf(events), ElementsAre(1));
                    EXPECT_EQ(catalogue.snapshot().array->size(), 1U);
                    EXPECT_EQ(session.waiting(), 0U);
                }
            }
        }
    }
}

TEST_F(ChainRerunTest, AKeyThatIsTakenAwayMeanwhileEndsInEmptyLoaders) {
    storeKey("A");
    chain.start();
    answerWhole(1);
    storeKey("");
    chain.restart();
    (void)since();
    EXPECT_EQ(session.waiting(), 0U);
    EXPECT_THAT(idsOf(all), IsEmpty());
    EXPECT_THAT(*catalogue.snapshot().array, IsEmpty());
}

}  // namespace
}  // namespace vantor
