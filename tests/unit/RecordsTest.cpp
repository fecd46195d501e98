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
