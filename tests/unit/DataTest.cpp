// The loader and the chain over a session that answers when told to.
#include <gmock/gmock.h>

#include <numeric>

#include "data/DataChain.h"
#include "data/JsonFetchable.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"

namespace vantor {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Progress = std::vector<AchievementCompletition>;

constexpr const char* progressUrl = "https://api.example/v2/account/achievements";

struct Scene {
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeDefaults defaults;
    std::vector<std::string> lines;
    LoaderContext context{queue, session, defaults, [this](const std::string& line) { lines.push_back(line); }};

    Scene() { storeKey("k"); }
    void storeKey(const std::string& key) { defaults.put(settings::apiKey, key); }
    void answer(std::optional<std::string> body, std::size_t place = 0) {
        ASSERT_TRUE(session.answer(std::move(body), place));
        queue.runAll();
    }
    std::vector<std::string> urls() const {
        std::vector<std::string> all;
        for (const UrlRequest& request : session.requests()) all.push_back(request.url);
        return all;
    }
    static std::vector<std::int64_t> idsOf(const JsonFetchable<AchievementCompletition>& loader) {
        std::vector<std::int64_t> ids;
        for (const auto& entry : *loader.snapshot().array) ids.push_back(entry.id);
        return ids;
    }
};

std::vector<std::int64_t> upTo(std::int64_t last) {
    std::vector<std::int64_t> ids(static_cast<std::size_t>(last));
    std::iota(ids.begin(), ids.end(), 1);
    return ids;
}

struct Loader : Scene {
    JsonFetchable<AchievementCompletition> loader{context, "AchievementCompletition", progressUrl, true, true};
    int completions = 0;

    void fetch(std::vector<std::int64_t> ids) {
        loader.fetch(std::move(ids), [this](Progress all) {
            ++completions;
            return all;
        });
        queue.runAll();
    }
    std::vector<std::int64_t> ids() const { return idsOf(loader); }
};

std::string entries(std::initializer_list<int> ids) {
    std::string body;
    for (const int id : ids)
        body += (body.empty() ? "[" : ",") + std::string(R"({"id": )") + std::to_string(id) +
                R"(, "current": 1, "max": 1, "done": true})";
    return body.empty() ? "[]" : body + "]";
}

}  // namespace

TEST(JsonFetchable, AsksWithTheKeyInTheHeaderOnly) {
    Loader scene;
    scene.storeKey("SECRET");
    scene.fetch({});
    const UrlRequest expected{.method = "GET",
                              .url = progressUrl,
                              .headers = {{"Authorization", "Bearer SECRET"}},
                              .timeout = std::chrono::seconds(60),
                              .body = ""};
    EXPECT_THAT(scene.session.requests(), ElementsAre(expected));
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 1);
    scene.answer(R"({"text": "Invalid access token"})");
    EXPECT_THAT(scene.lines, ElementsAre("Error filling Array<AchievementCompletition>: document: no array"));
}

TEST(JsonFetchable, CutsIdsIntoBatches) {
    Loader scene;
    const auto ids = upTo(450);
    scene.fetch(ids);
    const auto urls = scene.urls();
    ASSERT_THAT(urls, SizeIs(3));
    EXPECT_THAT(urls[0], testing::StartsWith(std::string(progressUrl) + "?ids=1,2,3,"));
    EXPECT_THAT(urls[0], testing::EndsWith(",199,200"));
    EXPECT_THAT(urls[1], testing::StartsWith(std::string(progressUrl) + "?ids=201,"));
    EXPECT_THAT(urls[2], testing::StartsWith(std::string(progressUrl) + "?ids=401,"));
    EXPECT_THAT(urls[2], testing::EndsWith(",450"));

    // Whatever the order, and with one of them lost, the last response runs the completion.
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 3);
    scene.answer(entries({3}), 2);
    scene.answer(std::nullopt, 1);
    EXPECT_EQ(scene.completions, 0);
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 1);
    scene.answer(entries({1, 2}));
    EXPECT_EQ(scene.completions, 1);
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 0);
    EXPECT_THAT(scene.ids(), ElementsAre(3, 1, 2));
    EXPECT_THAT(scene.lines, ElementsAre("No data for Array<AchievementCompletition>"));
}

TEST(JsonFetchable, AsksForWhatItDoesNotHold) {
    const struct {
        std::vector<std::int64_t> ids;
        std::string query;
    } rows[] = {
        {{9, 1, 8, 9, 2, -4}, "?ids=9,8,9,-4"},  // duplicates stay, in their order
        {{2, 1}, ""},                            // all held: the whole endpoint, on purpose
        {{}, ""},
    };
    for (const auto& row : rows) {
        Loader scene;
        scene.loader.assign({{.id = 1, .bits = {}, .unlocked = {}, .repeated = {}},
                             {.id = 2, .bits = {}, .unlocked = {}, .repeated = {}}});
        scene.fetch(row.ids);
        EXPECT_THAT(scene.urls(), ElementsAre(progressUrl + row.query));
        scene.answer(entries({1, 2}));
        EXPECT_THAT(scene.ids(), ElementsAre(1, 2, 1, 2));
    }
    Scene scene;
    JsonFetchable<Raid> raids(scene.context, "Raid", "https://api.example/v2/raids?ids=all", false, true);
    JsonFetchable<BeastCategory> one(scene.context, "BeastCategory", "https://files.example/b.json", false, false);
    scene.storeKey("");  // which only the authenticated need
    raids.fetch({});
    one.fetch({});
    scene.queue.runAll();
    EXPECT_THAT(scene.urls(), ElementsAre("https://api.example/v2/raids?ids=all", "https://files.example/b.json"));
    for (const UrlRequest& request : scene.session.requests()) EXPECT_THAT(request.headers, IsEmpty());
    scene.answer(R"({"id": "c", "races": []})", 1);
    EXPECT_THAT(*one.snapshot().array, ElementsAre(BeastCategory{"c", {}}));
}

TEST(JsonFetchable, ABodyThatDoesNotDecodeSkipsTheCompletionAndAnEmptyOneDoesNot) {
    Loader scene;
    scene.fetch(upTo(201));
    scene.answer(entries({7}));
    scene.answer(R"([{"id": 8, "current": 1, "max": 1}])");
    EXPECT_EQ(scene.completions, 0);
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 0);
    EXPECT_THAT(scene.ids(), ElementsAre(7));
    scene.fetch({});
    scene.answer("");
    EXPECT_EQ(scene.completions, 1);
    EXPECT_THAT(scene.lines, ElementsAre("Error filling Array<AchievementCompletition>: [0].done: missing",
                                         "No data for Array<AchievementCompletition>"));
}

TEST(JsonFetchable, OverlappingFetchesShareTheCounter) {
    Loader scene;
    std::vector<std::string> ran;
    const auto named = [&ran](std::string name) {
        return [&ran, name = std::move(name)](Progress all) {
            ran.push_back(name);
            return all;
        };
    };
    const auto ids = upTo(400);
    scene.loader.fetch(ids, named("first"));
    scene.loader.fetch({}, named("second"));
    scene.queue.runAll();
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 1);
    scene.answer(entries({1}));  // of the first fetch: it brings the counter from 1 to 0
    EXPECT_THAT(ran, ElementsAre("first"));
    scene.answer(entries({2}));
    scene.answer(entries({3}));
    EXPECT_THAT(ran, ElementsAre("first"));
    EXPECT_THAT(scene.ids(), ElementsAre(1, 2, 3));
    EXPECT_LE(scene.loader.snapshot().activeRequests, 0);
    scene.loader.fetch({}, named("third"));
    scene.queue.runAll();
    scene.answer(entries({4}));
    EXPECT_THAT(ran, ElementsAre("first", "third"));
}

TEST(JsonFetchable, CallsHappenInOrderAndTheKeyIsReadThen) {
    Loader scene;
    scene.loader.assign({{.id = 1, .bits = {}, .unlocked = {}, .repeated = {}}});
    scene.loader.fetch({1, 2});
    scene.loader.assign({});
    EXPECT_THAT(scene.session.requests(), IsEmpty());  // nothing before its task
    scene.storeKey("late");
    std::vector<std::size_t> seen;
    scene.loader.onChange([&] { seen.push_back(scene.loader.snapshot().array->size()); });
    scene.queue.runAll();
    EXPECT_THAT(scene.urls(), ElementsAre(std::string(progressUrl) + "?ids=2"));
    EXPECT_THAT(scene.session.requests()[0].headers,
                ElementsAre(std::pair<std::string, std::string>("Authorization", "Bearer late")));
    EXPECT_THAT(seen, ElementsAre(1, 1, 0));
    const auto before = scene.loader.snapshot().array;
    scene.answer(entries({5}));
    EXPECT_THAT(*before, IsEmpty());  // a snapshot stays what it was
    EXPECT_THAT(scene.ids(), ElementsAre(5));
}

TEST(JsonFetchable, TheCompletionsListReplacesTheRecords) {
    Loader scene;
    std::vector<std::size_t> sizes;
    scene.loader.fetch({}, [](Progress all) {
        std::erase_if(all, [](const auto& entry) { return entry.id % 2 == 0; });
        return all;
    });
    scene.queue.runAll();
    scene.loader.onChange([&] { sizes.push_back(scene.loader.snapshot().array->size()); });
    scene.answer(entries({1, 2, 3}));
    EXPECT_THAT(scene.ids(), ElementsAre(1, 3));
    EXPECT_THAT(sizes, ElementsAre(2));  // what the completion has not gone over is never seen
}

TEST(JsonFetchableDeathTest, AnAddressThatDoesNotParseStopsTheProgram) {
    for (const char* address : {"https://api.example:port/v2", "no scheme", "", "https://api.example/a b"}) {
        Scene scene;
        JsonFetchable<Raid> raids(scene.context, "Raid", address, false, true);
        EXPECT_DEATH(raids.fetchNow({}, {}), "is no address") << address;
    }
}

namespace {

constexpr const char* catalogue = R"([{"id": 1, "category": "c", "name": "n", "active": true, "segments": [],
                                       "sequences": {"partial": [], "pattern": []}}])";
constexpr const char* bestiary = R"([
    {"id": "c1", "races": [{"id": "r1", "icon": "", "description": "", "unlock": 30, "unlock_txt": ""},
                           {"id": "r2", "icon": "", "description": "", "unlock_txt": ""}]},
    {"id": "c2", "races": [{"id": "r3", "icon": "", "description": "", "unlock": 10, "unlock_txt": ""}]}])";

struct Chain : Scene {
    JsonFetchable<AchievementCompletition> all{context, "AchievementCompletition", progressUrl, true, true};
    JsonFetchable<EventsSection> sections{context, "EventsSection", "https://files.example/events.json", false, true};
    JsonFetchable<BeastCategory> beasts{context, "BeastCategory", "https://files.example/beasts.json", false, true};
    JsonFetchable<AchievementCompletition> events{context, "AchievementCompletition", progressUrl, true, true};
    JsonFetchable<AchievementCompletition> unlocks{context, "AchievementCompletition", progressUrl, true, true};
    std::vector<std::pair<std::size_t, std::size_t>> computed;  // sections, progress entries known then
    DataChain chain{queue, {all, sections, beasts, events, unlocks}, [this](const auto& given, const auto& progress) {
                        computed.emplace_back(given.size(), progress.size());
                        return std::vector<std::int64_t>{40, 20, 99};
                    }};

    // What was asked for since the last look, as "path key".
    std::vector<std::string> since() {
        queue.runAll();
        std::vector<std::string> asked;
        const auto requests = session.requests();
        for (; seen < requests.size(); ++seen) {
            asked.push_back(requests[seen].url.substr(requests[seen].url.rfind('/')));
            for (const auto& [name, value] : requests[seen].headers) asked.back() += " " + value;
        }
        return asked;
    }
    void answerWhole(int id) {
        answer(entries({id}));
        answer(catalogue);
        answer("[]");
    }
    std::size_t seen = 0;
};

}  // namespace

TEST(DataChain, FillsTheOthersFromOneFullLoad) {
    Chain scene;
    scene.sections.assign(decodeJson<std::vector<EventsSection>>(catalogue).value.value());
    scene.events.assign({{.id = 77, .bits = {}, .unlocked = {}, .repeated = {}}});
    scene.chain.start();
    EXPECT_THAT(scene.since(), ElementsAre("/achievements Bearer k"));
    scene.answer(entries({10, 20, 30, 40, 50}));
    EXPECT_THAT(scene.since(), ElementsAre("/events.json", "/beasts.json"));
    EXPECT_THAT(*scene.sections.snapshot().array, IsEmpty());  // a reload replaces

    scene.answer(bestiary, 1);
    EXPECT_THAT(Scene::idsOf(scene.unlocks), ElementsAre(10, 30));
    EXPECT_THAT(scene.computed, IsEmpty());
    scene.answer(catalogue);
    EXPECT_THAT(Scene::idsOf(scene.events), ElementsAre(20, 40));
    // Computed before the new progress was in place.
    EXPECT_THAT(scene.computed, ElementsAre(std::pair(1, 1)));
    EXPECT_THAT(Scene::idsOf(scene.all), ElementsAre(10, 20, 30, 40, 50));

    scene.chain.recompute();
    EXPECT_THAT(scene.computed, SizeIs(1));
    scene.queue.runAll();
    EXPECT_THAT(scene.computed, ElementsAre(std::pair(1, 1), std::pair(1, 2)));
    EXPECT_THAT(scene.since(), IsEmpty());
    EXPECT_THAT(scene.lines, IsEmpty());
}

TEST(DataChain, StopsWhereALoadFails) {
    struct Row {
        const char* name;
        std::string key;
        std::optional<std::string> progress, catalogue;
        std::size_t requests;
        std::size_t computations;
        std::vector<std::string> lines;
    };
    const Row rows[] = {
        {"no key", "", std::nullopt, std::nullopt, 0, 0, {}},
        {"revoked key",
         "k",
         R"({"text": "Invalid access token"})",
         std::nullopt,
         1,
         0,
         {"Error filling Array<AchievementCompletition>: document: no array"}},
        {"progress lost on the way",
         "k",
         std::nullopt,
         catalogue,
         3,
         1,
         {"No data for Array<AchievementCompletition>"}},
        {"catalogue is no list", "k", "[]", "{}", 3, 0, {"Error filling Array<EventsSection>: document: no array"}},
        {"catalogue lost on the way", "k", "[]", std::nullopt, 3, 1, {"No data for Array<EventsSection>"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Chain scene;
        scene.storeKey(row.key);
        scene.chain.start();
        scene.queue.runAll();
        if (row.requests > 0) scene.answer(row.progress);
        if (row.requests > 1) scene.answer(row.catalogue);
        EXPECT_THAT(scene.urls(), SizeIs(row.requests));
        EXPECT_THAT(scene.computed, SizeIs(row.computations));
        EXPECT_EQ(scene.lines, row.lines);
        EXPECT_THAT(*scene.events.snapshot().array, IsEmpty());
    }
}

TEST(DataChain, RunsAgainFromEmptyLoadersWithTheNewKeyOnceAllAreIdle) {
    Chain scene;
    scene.storeKey("");
    scene.chain.start();
    EXPECT_THAT(scene.since(), IsEmpty());
    scene.storeKey("A");
    scene.chain.restart();  // at once, where the start had no key
    EXPECT_THAT(scene.since(), ElementsAre("/achievements Bearer A"));
    scene.answerWhole(20);
    EXPECT_THAT(scene.since(), ElementsAre("/events.json", "/beasts.json"));

    scene.storeKey("B");
    scene.chain.restart();
    EXPECT_THAT(scene.since(), ElementsAre("/achievements Bearer B"));
    for (const auto* loader : {&scene.all, &scene.events, &scene.unlocks})
        EXPECT_THAT(Scene::idsOf(*loader), IsEmpty());
    EXPECT_THAT(*scene.sections.snapshot().array, IsEmpty());
    EXPECT_THAT(*scene.beasts.snapshot().array, IsEmpty());
    // However often it is asked for meanwhile, it runs once more, after the last answer.
    scene.answer(entries({40}));
    for (const char* key : {"C", "D"}) {
        scene.storeKey(key);
        scene.chain.restart();
    }
    EXPECT_THAT(scene.since(), ElementsAre("/events.json", "/beasts.json"));
    scene.answer(catalogue);
    EXPECT_THAT(scene.since(), IsEmpty());  // the bestiary is still on its way
    scene.answer("{");
    EXPECT_THAT(scene.since(), ElementsAre("/achievements Bearer D"));
    scene.answer(entries({20}));
    scene.answer(catalogue);
    scene.answer(bestiary);
    EXPECT_THAT(scene.since(), ElementsAre("/events.json", "/beasts.json"));
    EXPECT_THAT(Scene::idsOf(scene.all), ElementsAre(20));
    EXPECT_THAT(Scene::idsOf(scene.events), ElementsAre(20));
    // Each from one catalogue and without the progress of the key before.
    EXPECT_THAT(scene.computed, ElementsAre(std::pair(1, 0), std::pair(1, 0), std::pair(1, 0)));

    scene.storeKey("");
    scene.chain.restart();
    EXPECT_THAT(scene.since(), IsEmpty());
    EXPECT_THAT(Scene::idsOf(scene.all), IsEmpty());
}

}  // namespace vantor
