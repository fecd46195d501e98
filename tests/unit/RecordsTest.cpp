// The records and their decoder: which bodies decode, and where an error is said to lie.
#include <gmock/gmock.h>

#include <fstream>
#include <limits>
#include <sstream>

#include "data/Catalogue.h"
#include "data/Decoder.h"
#include "data/WebApi.h"

namespace vantor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

std::string fileText(const std::string& path) {
    std::ifstream file(std::string(VANTOR_SOURCE_DIR) + "/" + path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

const std::string goodEvent = R"({"id": 1, "name": "Dawn", "chatlink": "[&BAAA=]", "lfg": 10, "bg": [1, 2],
    "rewards": {"items": [], "items_for_achievements": [{"i": 7, "a": 8}]}, "unheard of": {"x": [null]}})";
const std::string goodSequences = R"({"partial": [], "pattern": [{"r": 1, "d": 120}]})";

std::string sectionWith(const std::string& segments, const std::string& sequences) {
    return R"({"id": 3, "category": "Core", "name": "Skies", "active": true, "segments": [)" + segments +
           "], \"sequences\": " + sequences + "}";
}

template <typename T>
std::string errorOf(const std::string& body) {
    const auto decoded = decodeJson<T>(body);
    EXPECT_EQ(decoded.value.has_value(), decoded.error.empty()) << body;
    return decoded.error;
}

}  // namespace

TEST(Records, DecodeUnderTheirKeys) {
    const auto sections = decodeJson<std::vector<EventsSection>>("[" + sectionWith(goodEvent, goodSequences) + "]");
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

    const auto progress = decodeJson<std::vector<AchievementCompletition>>(
        R"([{"id": 5, "current": 1, "max": 2, "done": false}, {"id": 6, "bits": [0, 3], "current": 2, "max": 2, "done": true,
             "unlocked": true, "repeated": 4}])");
    EXPECT_THAT(
        progress.value,
        Optional(ElementsAre(
            AchievementCompletition{
                .id = 5, .bits = {}, .current = 1, .max = 2, .done = false, .unlocked = {}, .repeated = {}},
            AchievementCompletition{
                .id = 6, .bits = {{0, 3}}, .current = 2, .max = 2, .done = true, .unlocked = true, .repeated = 4})));
}

TEST(Records, ErrorNamesThePlace) {
    const std::string good = sectionWith(goodEvent, goodSequences);
    const struct {
        std::string body;
        std::string error;
    } catalogues[] = {
        {"[" + good + "," + good + "]", ""},
        {"[" + good + "," +
             sectionWith(goodEvent, R"({"partial": [], "pattern": [{"eventId": 1, "durationMinutes": 2}]})") + "]",
         "[1].sequences.pattern[0].r: missing"},
        {"[" + sectionWith(goodEvent, R"({"partial": []})") + "]", "[0].sequences.pattern: missing"},
        {R"([{"id": 3, "category": "c", "name": "n", "active": 1}])", "[0].active: no boolean"},
        {R"([{"id": 3.5}])", "[0].id: no integer"},
        {R"([{"id": 3, "category": 4}])", "[0].category: no text"},
        {"[" + sectionWith(R"({"id": 1, "name": "n", "bg": [1, false]})", goodSequences) + "]",
         "[0].segments[0].bg[1]: no integer"},
        {"[" + sectionWith(R"({"id": 1, "name": "n", "rewards": []})", goodSequences) + "]",
         "[0].segments[0].rewards: no object"},
        {"[" +
             sectionWith(R"({"id": 1, "name": "n", "rewards": {"items_for_achievements": [{"i": 1}]}})",
                         goodSequences) +
             "]",
         "[0].segments[0].rewards.items_for_achievements[0].a: missing"},
        {"[1]", "[0]: no object"},
        {"{}", "document: no array"},
    };
    for (const auto& row : catalogues) EXPECT_EQ(errorOf<std::vector<EventsSection>>(row.body), row.error) << row.body;

    EXPECT_EQ(errorOf<EventsSection>(R"({"id": 1})"), "category: missing");
    EXPECT_EQ(errorOf<std::vector<std::string>>(R"(["a", 2])"), "[1]: no text");
}

TEST(Records, IntegersAreSigned64BitAndExact) {
    const struct {
        const char* text;
        std::optional<std::int64_t> value;
    } rows[] = {
        {"0", 0},
        {"-0", 0},
        {"1", 1},
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
    for (const auto& row : rows) {
        const auto decoded = decodeJson<ItemForAchievement>(std::string(R"({"a": 1, "i": )") + row.text + "}");
        EXPECT_EQ(decoded.value ? std::optional(decoded.value->i) : std::nullopt, row.value) << row.text;
    }
}

TEST(Records, AnOptionalKeyMayBeNullAndTellsEmptyFromAbsent) {
    const auto event = decodeJson<Event>(
        R"({"id": 1, "name": "", "link": null, "lfg": null, "rewards": {"items": [], "achievements": null}})");
    ASSERT_TRUE(event.value) << event.error;
    EXPECT_EQ(event.value->link, std::nullopt);
    EXPECT_EQ(event.value->lfg, std::nullopt);
    ASSERT_TRUE(event.value->rewards);
    EXPECT_THAT(event.value->rewards->items, Optional(testing::IsEmpty()));
    EXPECT_EQ(event.value->rewards->achievements, std::nullopt);
    EXPECT_EQ(decodeJson<Event>(R"({"id": 1, "name": ""})").value->rewards, std::nullopt);
}

// What is embedded decodes whole, and encoding it again loses nothing.
TEST(Records, EmbeddedFilesDecodeAndEncode) {
    const auto sections = decodeJson<std::vector<EventsSection>>(fileText("resources/catalogue/events.json"));
    ASSERT_TRUE(sections.value) << sections.error;
    EXPECT_GT(sections.value->size(), 20U);
    EXPECT_EQ(decodeJson<std::vector<EventsSection>>(encodeJson(*sections.value)).value, sections.value);

    const auto beasts = decodeJson<std::vector<BeastCategory>>(fileText("resources/catalogue/categories/beasts.json"));
    ASSERT_TRUE(beasts.value) << beasts.error;
    EXPECT_FALSE(beasts.value->empty());
    EXPECT_EQ(decodeJson<std::vector<BeastCategory>>(encodeJson(*beasts.value)).value, beasts.value);
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
    const auto raids = decodeJson<std::vector<Raid>>(
        R"([{"id": "r", "wings": [{"id": "w", "events": [{"id": "e", "type": "Boss"}]}]}])");
    EXPECT_THAT(raids.value, Optional(ElementsAre(Raid{"r", {{"w", {{"e", "Boss"}}}}})));
}

}  // namespace vantor
