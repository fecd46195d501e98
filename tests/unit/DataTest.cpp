// The loader and the chain over a session that answers when told to.
#include <gmock/gmock.h>

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

    void answer(std::optional<std::string> body, std::size_t place = 0) {
        ASSERT_TRUE(session.answer(std::move(body), place));
        queue.runAll();
    }
    std::vector<std::string> urls() const {
        std::vector<std::string> all;
        for (const UrlRequest& request : session.requests()) all.push_back(request.url);
        return all;
    }
};

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
    std::vector<std::int64_t> ids() const {
        std::vector<std::int64_t> all;
        for (const auto& entry : *loader.snapshot().array) all.push_back(entry.id);
        return all;
    }
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
    scene.defaults.put(settings::apiKey, std::string("SECRET"));
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

TEST(JsonFetchable, WithoutKeyOnlyTheUnauthenticatedGoOn) {
    for (const auto& key : {std::optional<SettingValue>(), std::optional<SettingValue>(std::string()),
                            std::optional<SettingValue>(true)}) {
        Loader scene;
        if (key) scene.defaults.put(settings::apiKey, *key);
        scene.fetch({});
        EXPECT_THAT(scene.session.requests(), IsEmpty());
        EXPECT_EQ(scene.loader.snapshot().activeRequests, 0);
        EXPECT_EQ(scene.completions, 0);

        JsonFetchable<std::string> bosses(scene.context, "String", "https://api.example/v2/worldbosses", false, true);
        bosses.fetch({});
        scene.queue.runAll();
        ASSERT_THAT(scene.session.requests(), SizeIs(1));
        EXPECT_THAT(scene.session.requests()[0].headers, IsEmpty());
        scene.answer(R"(["tequatl"])");
        EXPECT_THAT(*bosses.snapshot().array, ElementsAre("tequatl"));
    }
}

TEST(JsonFetchable, CutsIdsIntoBatches) {
    Loader scene;
    scene.defaults.put(settings::apiKey, std::string("k"));
    std::vector<std::int64_t> ids(450);
    for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<std::int64_t>(i) + 1;
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
        scene.defaults.put(settings::apiKey, std::string("k"));
        scene.loader.assign({{.id = 1, .bits = {}, .unlocked = {}, .repeated = {}},
                             {.id = 2, .bits = {}, .unlocked = {}, .repeated = {}}});
        scene.fetch(row.ids);
        EXPECT_THAT(scene.urls(), ElementsAre(progressUrl + row.query));
        scene.answer(entries({1, 2}));
        EXPECT_THAT(scene.ids(), ElementsAre(1, 2, 1, 2));
    }
    Scene scene;
    JsonFetchable<Raid> raids(scene.context, "Raid", "https://api.example/v2/raids?ids=all", false, true);
    raids.fetch({});
    scene.queue.runAll();
    EXPECT_THAT(scene.urls(), ElementsAre("https://api.example/v2/raids?ids=all"));
}

TEST(JsonFetchable, ABodyThatDoesNotDecodeSkipsTheCompletionAndKeepsTheRest) {
    Loader scene;
    scene.defaults.put(settings::apiKey, std::string("k"));
    std::vector<std::int64_t> ids(201);
    for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<std::int64_t>(i) + 1;
    scene.fetch(ids);
    scene.answer(entries({7}));
    scene.answer(R"([{"id": 8, "current": 1, "max": 1}])");
    EXPECT_EQ(scene.completions, 0);
    EXPECT_EQ(scene.loader.snapshot().activeRequests, 0);
    EXPECT_THAT(scene.ids(), ElementsAre(7));
    EXPECT_THAT(scene.lines, ElementsAre("Error filling Array<AchievementCompletition>: [0].done: missing"));
}

TEST(JsonFetchable, AnEmptyBodyIsNoBody) {
    Loader scene;
    scene.defaults.put(settings::apiKey, std::string("k"));
    scene.fetch({});
    scene.answer("");
    EXPECT_THAT(scene.lines, ElementsAre("No data for Array<AchievementCompletition>"));
    EXPECT_EQ(scene.completions, 1);
}

TEST(JsonFetchable, OverlappingFetchesShareTheCounter) {
    Loader scene;
    scene.defaults.put(settings::apiKey, std::string("k"));
    std::vector<std::string> ran;
    const auto named = [&ran](std::string name) {
        return [&ran, name = std::move(name)](Progress all) {
            ran.push_back(name);
            return all;
        };
    };
    std::vector<std::int64_t> ids(400);
    for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<std::int64_t>(i) + 1;
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
    scene.defaults.put(settings::apiKey, std::string("late"));
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
    scene.defaults.put(settings::apiKey, std::string("k"));
    int changes = 0;
    std::vector<std::size_t> sizes;
    scene.loader.fetch({}, [](Progress all) {
        std::erase_if(all, [](const auto& entry) { return entry.id % 2 == 0; });
        return all;
    });
    scene.queue.runAll();
    scene.loader.onChange([&] {
        ++changes;
        sizes.push_back(scene.loader.snapshot().array->size());
    });
    scene.answer(entries({1, 2, 3}));
    EXPECT_THAT(scene.ids(), ElementsAre(1, 3));
    EXPECT_THAT(sizes, ElementsAre(2));  // what the completion has not gone over is never seen
}

TEST(JsonFetchable, OneRecordOrAList) {
    Scene scene;
    JsonFetchable<BeastCategory> one(scene.context, "BeastCategory", "https://files.example/b.json", false, false);
    one.fetch({});
    scene.queue.runAll();
    scene.answer(R"({"id": "c", "races": []})");
    one.fetch({});
    scene.queue.runAll();
    scene.answer(R"([{"id": "c", "races": []}])");
    EXPECT_THAT(*one.snapshot().array, ElementsAre(BeastCategory{"c", {}}));
    EXPECT_THAT(scene.lines, ElementsAre("Error filling Array<BeastCategory>: document: no object"));
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

    static std::vector<std::int64_t> idsOf(const JsonFetchable<AchievementCompletition>& loader) {
        std::vector<std::int64_t> ids;
        for (const auto& entry : *loader.snapshot().array) ids.push_back(entry.id);
        return ids;
    }
    void start() {
        chain.start();
        queue.runAll();
    }
};

}  // namespace

TEST(DataChain, FillsTheOthersFromOneFullLoad) {
    Chain scene;
    scene.defaults.put(settings::apiKey, std::string("k"));
    scene.sections.assign(decodeJson<std::vector<EventsSection>>(catalogue).value.value());
    scene.events.assign({{.id = 77, .bits = {}, .unlocked = {}, .repeated = {}}});
    scene.start();
    EXPECT_THAT(scene.urls(), ElementsAre(progressUrl));
    scene.answer(entries({10, 20, 30, 40, 50}));
    EXPECT_THAT(scene.urls(),
                ElementsAre(progressUrl, "https://files.example/events.json", "https://files.example/beasts.json"));
    EXPECT_THAT(*scene.sections.snapshot().array, IsEmpty());  // a reload replaces

    scene.answer(bestiary, 1);
    EXPECT_THAT(Chain::idsOf(scene.unlocks), ElementsAre(10, 30));
    EXPECT_THAT(scene.computed, IsEmpty());
    scene.answer(catalogue);
    EXPECT_THAT(Chain::idsOf(scene.events), ElementsAre(20, 40));
    // Computed before the new progress was in place.
    EXPECT_THAT(scene.computed, ElementsAre(std::pair(1, 1)));
    EXPECT_THAT(Chain::idsOf(scene.all), ElementsAre(10, 20, 30, 40, 50));

    scene.chain.recompute();
    EXPECT_THAT(scene.computed, SizeIs(1));
    scene.queue.runAll();
    EXPECT_THAT(scene.computed, ElementsAre(std::pair(1, 1), std::pair(1, 2)));
    EXPECT_THAT(scene.urls(), SizeIs(3));
    EXPECT_THAT(scene.lines, IsEmpty());
}

TEST(DataChain, StopsWhereALoadFails) {
    struct Row {
        const char* name;
        std::optional<std::string> key, progress, catalogue;
        std::size_t requests;
        std::size_t computations;
        std::vector<std::string> lines;
    };
    const Row rows[] = {
        {"no key", std::nullopt, std::nullopt, std::nullopt, 0, 0, {}},
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
        if (row.key) scene.defaults.put(settings::apiKey, *row.key);
        scene.start();
        if (row.requests > 0) scene.answer(row.progress);
        if (row.requests > 1) scene.answer(row.catalogue);
        EXPECT_THAT(scene.urls(), SizeIs(row.requests));
        EXPECT_THAT(scene.computed, SizeIs(row.computations));
        EXPECT_EQ(scene.lines, row.lines);
        EXPECT_THAT(*scene.events.snapshot().array, IsEmpty());
    }
}

}  // namespace vantor
