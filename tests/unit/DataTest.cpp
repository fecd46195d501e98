// The records and their decoder, and the loader and the chain over a session that answers when told to.
#include <gmock/gmock.h>

#include <fstream>
#include <limits>
#include <numeric>
#include <sstream>

#include "data/Catalogue.h"
#include "data/DataChain.h"
#include "data/JsonFetchable.h"
#include "data/WebApi.h"
#include "unit/Services.h"

namespace vantor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

using Progress = std::vector<AchievementCompletition>;
using Ids = std::vector<std::int64_t>;

const std::string progressUrl = "https://api.example/v2/account/achievements";

AchievementCompletition entry(std::int64_t id) { return {.id = id, .bits = {}, .unlocked = {}, .repeated = {}}; }

// The body that has these, all of them done.
std::string entries(const Ids& ids) {
    std::string body;
    for (const auto id : ids)
        body += (body.empty() ? "[" : ",") + std::string(R"({"id": )") + std::to_string(id) +
                R"(, "current": 1, "max": 1, "done": true})";
    return body + "]";
}

Ids idsOf(const JsonFetchable<AchievementCompletition>& loader) {
    Ids ids;
    for (const auto& each : *loader.snapshot().array) ids.push_back(each.id);
    return ids;
}

Ids upTo(std::int64_t last) {
    Ids ids(static_cast<std::size_t>(last));
    std::iota(ids.begin(), ids.end(), 1);
    return ids;
}

class JsonFetchableTest : public testing::Test, protected Services {
protected:
    JsonFetchableTest() { storeKey("k"); }
    // The completion writes its name down.
    void fetch(const Ids& ids, const std::string& name = "done") {
        loader.fetch(ids, [this, name](Progress all) {
            ran.push_back(name);
            return all;
        });
        settle();
    }
    [[nodiscard]] std::int64_t active() const { return loader.snapshot().activeRequests; }

    LoaderContext context{queue, session, defaults, print};
    JsonFetchable<AchievementCompletition> loader{context, "AchievementCompletition", progressUrl, true, true};
    std::vector<std::string> ran;
};

}  // namespace

TEST_F(JsonFetchableTest, AsksWithTheKeyInTheHeaderOnlyAndOnlyWhereOneIsWanted) {
    JsonFetchable<Raid> raids(context, "Raid", "https://api.example/v2/raids?ids=all", false, true);
    JsonFetchable<BeastCategory> one(context, "BeastCategory", "https://files.example/b.json", false, false);
    storeKey("SECRET");
    fetch({});
    UrlRequest expected{.method = "GET",
                        .url = progressUrl,
                        .headers = {{"Authorization", "Bearer SECRET"}},
                        .timeout = std::chrono::seconds(60),
                        .body = ""};
    EXPECT_THAT(session.requests(), ElementsAre(expected));
    answer(R"({"text": "Invalid access token"})");
    EXPECT_THAT(printed, ElementsAre("Error filling Array<AchievementCompletition>: document: no array"));
    for (const char* key : {"SECRET", ""}) {
        storeKey(key);
        (void)asked();
        raids.fetch({});
        one.fetch({});
        EXPECT_THAT(asked(), ElementsAre("https://api.example/v2/raids?ids=all", "https://files.example/b.json"));
        EXPECT_THAT(session.requests().back().headers, IsEmpty());
        answer(R"({"id": "c", "races": []})", 1);
        answer("[]");
    }
    EXPECT_THAT(*one.snapshot().array, ElementsAre(BeastCategory{"c", {}}, BeastCategory{"c", {}}));
    fetch({});
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(JsonFetchableTest, CutsIdsIntoBatchesAndEndsWithTheLastResponseInWhateverOrder) {
    fetch(upTo(450));
    const auto urls = asked();
    ASSERT_THAT(urls, SizeIs(3));
    EXPECT_THAT(urls[0], testing::StartsWith(progressUrl + "?ids=1,2,3,"));
    EXPECT_THAT(urls[0], testing::EndsWith(",199,200"));
    EXPECT_THAT(urls[1], testing::StartsWith(progressUrl + "?ids=201,"));
    EXPECT_THAT(urls[2], testing::StartsWith(progressUrl + "?ids=401,"));
    EXPECT_THAT(urls[2], testing::EndsWith(",450"));

    EXPECT_EQ(active(), 3);
    answer(entries({3}), 2);
    answer(std::nullopt, 1);
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(active(), 1);
    answer(entries({1, 2}));
    EXPECT_THAT(ran, ElementsAre("done"));
    EXPECT_EQ(active(), 0);
    EXPECT_EQ(idsOf(loader), (Ids{3, 1, 2}));
    EXPECT_THAT(printed, ElementsAre("No data for Array<AchievementCompletition>"));

    // A body that does not decode skips the completion; an empty one does not.
    fetch(upTo(210));
    answer(entries({7}));
    answer(R"([{"id": 8, "current": 1, "max": 1}])");
    EXPECT_THAT(ran, SizeIs(1));
    EXPECT_EQ(active(), 0);
    fetch({});
    answer("");
    EXPECT_THAT(ran, SizeIs(2));
    EXPECT_THAT(printed, ElementsAre("No data for Array<AchievementCompletition>",
                                     "Error filling Array<AchievementCompletition>: [0].done: missing",
                                     "No data for Array<AchievementCompletition>"));
}

TEST_F(JsonFetchableTest, AsksForWhatItDoesNotHold) {
    const std::pair<Ids, const char*> rows[] = {
        {{9, 1, 8, 9, 2, -4}, "?ids=9,8,9,-4"},  // duplicates stay, in their order
        {{2, 1}, ""},                            // all held: the whole endpoint, on purpose
        {{}, ""},
    };
    for (const auto& [ids, query] : rows) {
        loader.assign({entry(1), entry(2)});
        fetch(ids);
        EXPECT_THAT(asked(), ElementsAre(progressUrl + query));
        answer(entries({1, 2}));
        EXPECT_EQ(idsOf(loader), (Ids{1, 2, 1, 2}));
    }
}

TEST_F(JsonFetchableTest, OverlappingFetchesShareTheCounter) {
    fetch(upTo(400), "first");
    fetch({}, "second");
    EXPECT_EQ(active(), 1);
    answer(entries({1}));  // of the first fetch: it brings the counter from 1 to 0
    EXPECT_THAT(ran, ElementsAre("first"));
    answer(entries({2}));
    answer(entries({3}));
    EXPECT_THAT(ran, ElementsAre("first"));
    EXPECT_LE(active(), 0);
    fetch({}, "third");
    answer(entries({4}));
    EXPECT_THAT(ran, ElementsAre("first", "third"));
    EXPECT_EQ(idsOf(loader), (Ids{1, 2, 3, 4}));
}

TEST_F(JsonFetchableTest, CallsHappenInOrderAndTheKeyIsReadThen) {
    std::vector<std::size_t> seen;
    loader.onChange([&] { seen.push_back(loader.snapshot().array->size()); });
    loader.assign({entry(1)});
    // The completion's list replaces the records; what it has not gone over is never seen.
    loader.fetch({1, 2}, [](Progress all) { return Progress{all.back()}; });
    loader.assign({});
    EXPECT_THAT(session.requests(), IsEmpty());  // nothing before its task
    storeKey("late");
    EXPECT_THAT(asked(), ElementsAre(progressUrl + "?ids=2"));
    EXPECT_EQ(session.requests()[0].headers[0].second, "Bearer late");
    const auto before = loader.snapshot().array;
    answer(entries({5, 6, 7}));
    EXPECT_THAT(*before, IsEmpty());  // a snapshot stays what it was
    EXPECT_EQ(idsOf(loader), Ids{7});
    EXPECT_THAT(seen, ElementsAre(1, 1, 0, 1));
}

using JsonFetchableDeathTest = JsonFetchableTest;
TEST_F(JsonFetchableDeathTest, AnAddressThatDoesNotParseStopsTheProgram) {
    for (const char* address : {"https://api.example:port/v2", "api.example/v2", "", "https://api.example/a b"}) {
        JsonFetchable<Raid> raids(context, "Raid", address, false, true);
        EXPECT_DEATH(raids.fetchNow({}, {}), "is no address") << address;
    }
}

namespace {

const std::string catalogue = R"([{"id": 1, "category": "c", "name": "n", "active": true, "segments": [],
                                   "sequences": {"partial": [], "pattern": []}}])";
const std::string bestiary = R"([
    {"id": "c1", "races": [{"id": "r1", "icon": "", "description": "", "unlock": 30, "unlock_txt": ""},
                           {"id": "r2", "icon": "", "description": "", "unlock_txt": ""}]},
    {"id": "c2", "races": [{"id": "r3", "icon": "", "description": "", "unlock": 10, "unlock_txt": ""}]}])";

class DataChainTest : public JsonFetchableTest {
protected:
    // What was asked for since the last look, and with which key.
    std::string next() {
        std::string text;
        for (const std::string& url : asked()) text += url.substr(url.rfind('/')) + " ";
        const auto requests = session.requests();
        return text + (text.starts_with("/ach") ? requests.back().headers.at(0).second : "");
    }
    JsonFetchable<EventsSection> sections{context, "EventsSection", "https://files.example/events.json", false, true};
    JsonFetchable<BeastCategory> beasts{context, "BeastCategory", "https://files.example/beasts.json", false, true};
    JsonFetchable<AchievementCompletition> events{context, "AchievementCompletition", progressUrl, true, true};
    JsonFetchable<AchievementCompletition> unlocks{context, "AchievementCompletition", progressUrl, true, true};
    std::vector<std::pair<std::size_t, std::size_t>> computed;  // sections, progress entries known then
    DataChain chain{queue, {loader, sections, beasts, events, unlocks}, [this](const auto& given, const auto& known) {
                        computed.emplace_back(given.size(), known.size());
                        return Ids{40, 20, 99};
                    }};
};

const std::string files = "/events.json /beasts.json ";

}  // namespace

TEST_F(DataChainTest, FillsTheOthersFromOneFullLoad) {
    sections.assign(decodeJson<std::vector<EventsSection>>(catalogue).value.value());
    events.assign({entry(77)});
    chain.start();
    EXPECT_EQ(next(), "/achievements Bearer k");
    answer(entries({10, 20, 30, 40, 50}));
    EXPECT_EQ(next(), files);
    EXPECT_THAT(*sections.snapshot().array, IsEmpty());  // a reload replaces

    answer(bestiary, 1);
    EXPECT_EQ(idsOf(unlocks), (Ids{10, 30}));
    EXPECT_THAT(computed, IsEmpty());
    answer(catalogue);
    EXPECT_EQ(idsOf(events), (Ids{20, 40}));
    // Computed before the new progress was in place.
    EXPECT_THAT(computed, ElementsAre(std::pair(1, 1)));
    EXPECT_EQ(idsOf(loader), (Ids{10, 20, 30, 40, 50}));

    chain.recompute();
    EXPECT_THAT(computed, SizeIs(1));
    EXPECT_EQ(next(), "");
    EXPECT_THAT(computed, ElementsAre(std::pair(1, 1), std::pair(1, 2)));
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(DataChainTest, StopsWhereALoadFails) {
    const struct {
        std::optional<std::string> progress, catalogue;
        const char* askedThen;
        std::size_t computations;
    } rows[] = {
        {R"({"text": "Invalid access token"})", {}, "", 0},
        {{}, catalogue, "/events.json /beasts.json ", 1},  // lost on the way is as good as empty
        {"[]", "{}", "/events.json /beasts.json ", 0},
        {"[]", {}, "/events.json /beasts.json ", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.progress.value_or("lost") + row.catalogue.value_or("lost"));
        computed.clear();
        chain.restart();
        EXPECT_EQ(next(), "/achievements Bearer k");
        answer(row.progress);
        EXPECT_EQ(next(), row.askedThen);
        while (session.waiting() > 0) answer(session.waiting() == 2 ? row.catalogue : "[]");
        EXPECT_THAT(computed, SizeIs(row.computations));
        EXPECT_THAT(idsOf(events), IsEmpty());
    }
}

TEST_F(DataChainTest, RunsAgainFromEmptyLoadersWithTheNewKeyOnceAllAreIdle) {
    storeKey("");
    chain.start();
    EXPECT_EQ(next(), "");
    storeKey("A");
    chain.restart();  // at once, where the start had no key
    EXPECT_EQ(next(), "/achievements Bearer A");
    answer(entries({10, 20}));
    EXPECT_EQ(next(), files);
    answer(catalogue);
    answer(bestiary);
    EXPECT_EQ(next(), "");

    storeKey("B");
    chain.restart();
    EXPECT_EQ(next(), "/achievements Bearer B");
    for (const auto* each : {&loader, &events, &unlocks}) EXPECT_THAT(idsOf(*each), IsEmpty());
    EXPECT_THAT(*sections.snapshot().array, IsEmpty());
    EXPECT_THAT(*beasts.snapshot().array, IsEmpty());
    // However often it is asked for meanwhile, it runs once more, after the last answer, whichever that is.
    answer(entries({40}));
    for (const std::size_t last : {0U, 1U}) {
        EXPECT_EQ(next(), files);
        for (const char* key : {"C", "D"}) {
            storeKey(key);
            chain.restart();
        }
        EXPECT_EQ(next(), "");
        answer(last == 0 ? bestiary : catalogue, 1 - last);
        EXPECT_EQ(next(), "") << "the other is still on its way";
        answer("{");
        EXPECT_EQ(next(), "/achievements Bearer D");
        answer(entries({20}));
    }
    EXPECT_EQ(next(), files);
    answer(catalogue);
    answer(bestiary);
    EXPECT_EQ(next(), "");
    EXPECT_EQ(idsOf(loader), Ids{20});
    EXPECT_EQ(idsOf(events), Ids{20});
    // Each from one catalogue and without the progress of the key before.
    EXPECT_THAT(computed, testing::Each(std::pair(1, 0)));
    EXPECT_THAT(computed, SizeIs(3));

    storeKey("");
    chain.restart();
    EXPECT_EQ(next(), "");
    EXPECT_THAT(idsOf(loader), IsEmpty());
}

namespace {

std::string fileText(const std::string& path) {
    std::ifstream file(std::string(VANTOR_SOURCE_DIR) + "/" + path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// A section of the catalogue with this event and this pattern, in place of ones that decode.
std::string sectionWith(const std::string& event = R"({"id": 1, "name": "Dawn", "chatlink": "[&BAAA=]", "lfg": 10,
    "bg": [1, 2], "rewards": {"items": [], "items_for_achievements": [{"i": 7, "a": 8}], "achievements": null},
    "link": null, "unheard of": {"x": [null]}})",
                        const std::string& sequences = R"({"partial": [], "pattern": [{"r": 1, "d": 120}]})") {
    return R"({"id": 3, "category": "Core", "name": "Skies", "active": true, "segments": [)" + event +
           "], \"sequences\": " + sequences + "}";
}

template <typename T>
std::string errorOf(const std::string& body) {
    const auto decoded = decodeJson<T>(body);
    EXPECT_EQ(decoded.value.has_value(), decoded.error.empty()) << body;
    return decoded.error;
}

}  // namespace

TEST(Records, DecodeUnderTheirKeysAndTellEmptyFromAbsent) {
    const auto sections = decodeJson<std::vector<EventsSection>>("[" + sectionWith() + "]");
    ASSERT_TRUE(sections.value) << sections.error;
    EventsSection expected{
        .id = 3, .category = "Core", .name = "Skies", .active = true, .link = {}, .segments = {}, .sequences = {}};
    expected.segments.push_back({.id = 1,
                                 .name = "Dawn",
                                 .link = {},
                                 .icon = {},
                                 .chatlink = "[&BAAA=]",
                                 .bg = {{1, 2}},
                                 .rewards = EventRewards{.achievements = {},
                                                         .items = std::vector<std::int64_t>{},
                                                         .items_for_achievements = {{{.i = 7, .a = 8}}},
                                                         .random_items = {}},
                                 .lfg = 10});
    expected.sequences.pattern.push_back({.eventId = 1, .durationMinutes = 120});
    EXPECT_THAT(*sections.value, ElementsAre(expected));
    EXPECT_EQ(decodeJson<Event>(R"({"id": 1, "name": ""})").value->rewards, std::nullopt);

    const auto progress = decodeJson<std::vector<AchievementCompletition>>(
        R"([{"id": 6, "bits": [0, 3], "current": 1, "max": 2, "done": true, "unlocked": true, "repeated": 4}])");
    EXPECT_THAT(
        progress.value,
        Optional(ElementsAre(AchievementCompletition{
            .id = 6, .bits = {{0, 3}}, .current = 1, .max = 2, .done = true, .unlocked = true, .repeated = 4})));
}

TEST(Records, ErrorNamesThePlace) {
    const std::pair<std::string, const char*> rows[] = {
        {"[" + sectionWith() + "," + sectionWith() + "]", ""},
        {"[" + sectionWith() + "," + sectionWith("", R"({"partial": [], "pattern": [{"durationMinutes": 2}]})") + "]",
         "[1].sequences.pattern[0].r: missing"},
        {"[" + sectionWith("", R"({"partial": []})") + "]", "[0].sequences.pattern: missing"},
        {R"([{"id": 3, "category": "c", "name": "n", "active": 1}])", "[0].active: no boolean"},
        {R"([{"id": 3.5}])", "[0].id: no integer"},
        {R"([{"id": 3, "category": 4}])", "[0].category: no text"},
        {"[" + sectionWith(R"({"id": 1, "name": "n", "bg": [1, false]})") + "]", "[0].segments[0].bg[1]: no integer"},
        {"[" + sectionWith(R"({"id": 1, "name": "n", "rewards": []})") + "]", "[0].segments[0].rewards: no object"},
        {"[" + sectionWith(R"({"id": 1, "name": "n", "rewards": {"items_for_achievements": [{"i": 1}]}})") + "]",
         "[0].segments[0].rewards.items_for_achievements[0].a: missing"},
        {"[1]", "[0]: no object"},
        {"{}", "document: no array"},
    };
    for (const auto& [body, error] : rows) EXPECT_EQ(errorOf<std::vector<EventsSection>>(body), error) << body;
    EXPECT_EQ(errorOf<EventsSection>(R"({"id": 1})"), "category: missing");
    EXPECT_EQ(errorOf<std::vector<std::string>>(R"(["a", 2])"), "[1]: no text");
}

TEST(Records, IntegersAreSigned64BitAndExact) {
    const std::pair<const char*, std::optional<std::int64_t>> rows[] = {
        {"0", 0},
        {"-0", 0},
        {"5.0", 5},
        {"1e3", 1000},
        {"9007199254740993", 9007199254740993},
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        {"9223372036854775808", std::nullopt},
        {"1e30", std::nullopt},
        {"0.5", std::nullopt},
        {"true", std::nullopt},
        {"\"1\"", std::nullopt},
        {"null", std::nullopt},
    };
    for (const auto& [text, value] : rows) {
        const auto decoded = decodeJson<ItemForAchievement>(std::string(R"({"a": 1, "i": )") + text + "}");
        EXPECT_EQ(decoded.value ? std::optional(decoded.value->i) : std::nullopt, value) << text;
    }
}

// What is embedded decodes whole, and encoding it again loses nothing.
TEST(Records, EmbeddedFilesDecodeAndEncode) {
    const auto expectWhole = [](auto decoded) {
        ASSERT_TRUE(decoded.value) << decoded.error;
        EXPECT_FALSE(decoded.value->empty());
        EXPECT_EQ(decodeJson<std::decay_t<decltype(*decoded.value)>>(encodeJson(*decoded.value)).value, decoded.value);
    };
    expectWhole(decodeJson<std::vector<EventsSection>>(fileText("resources/catalogue/events.json")));
    expectWhole(decodeJson<std::vector<BeastCategory>>(fileText("resources/catalogue/categories/beasts.json")));
}

TEST(Records, BodiesOfTheWebApiDecode) {
    const std::string folder = "demo/web-api/";
    EXPECT_EQ(errorOf<std::vector<AchievementCompletition>>(fileText(folder + "account_achievements.json")), "");
    EXPECT_EQ(errorOf<std::vector<std::string>>(fileText(folder + "worldbosses.json")), "");
    EXPECT_EQ(errorOf<std::vector<Achievement>>(fileText(folder + "achievements.json")), "");
    EXPECT_EQ(errorOf<Account>(fileText(folder + "account.json")), "");
    EXPECT_EQ(errorOf<AchievementCategory>(fileText(folder + "achievements_categories_261.json")), "");
    // The API's later form of a category is another type of element.
    EXPECT_THAT(errorOf<AchievementCategory>(fileText(folder + "achievements_categories_261_schema2022.json")),
                HasSubstr("achievements[0]: no integer"));
    EXPECT_EQ(
        errorOf<std::vector<Raid>>(R"([{"id": "r", "wings": [{"id": "w", "events": [{"id": "e", "type": "Boss"}]}]}])"),
        "");
}

}  // namespace vantor
