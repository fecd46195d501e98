// Settings by name and text, and the list of applications that count as the game.
#include <gmock/gmock.h>

#include <limits>

#include "app/EnabledApplications.h"
#include "app/Settings.h"
#include "fake/FakeDefaults.h"

namespace vantor {
namespace {

using Texts = std::vector<std::string>;
using Stored = std::optional<SettingValue>;

TEST(Settings, TextIsReadByTheKeysTypeAndWrittenAsItIsRead) {
    const struct {
        const char* key;
        const char* text;
        Stored value;
    } rows[] = {
        {"general.pasteClipoard", "true", true},
        {"general.enableChatLinkReturnKey", "false", false},
        {"timer.isEvent", "yes", {}},
        {"timer.isEvent", "", {}},
        {"timer.windowDuration", "2.5", 2.5},
        {"timer.windowDuration", "0.1", 0.1},
        {"timer.windowDuration", "1e400", {}},
        {"timer.windowDuration", "nan", {}},
        {"timer.windowDuration", "3,5", {}},
        {"timer.watchedWindowDuration", "", {}},
        {"api.key", "true", std::string("true")},
        {"api.key", "", std::string()},
        {"general.windowToggleEvent", "⌘ + ⇧ + T", std::string("⌘ + ⇧ + T")},
        {"apps.enabled", "a, b,,a", Texts{"a", "b", "a"}},
        {"apps.enabled", R"(["a, b", " ", "[", "\"\\", "ü"])", Texts{"a, b", " ", "[", "\"\\", "ü"}},
        {"apps.enabled", " ", Texts{}},
        {"apps.enabled", "[1]", {}},
        {"apps.enabled", "[\"a\"", {}},
    };
    for (const auto& row : rows) {
        const Setting* setting = findSetting(row.key);
        ASSERT_NE(setting, nullptr) << row.key;
        EXPECT_EQ(parseSetting(*setting, row.text), row.value) << row.key << "=" << row.text;
        if (row.value) {
            EXPECT_EQ(parseSetting(*setting, formatSetting(*row.value)), row.value) << row.text;
        }
    }
    const SettingValue most = std::numeric_limits<double>::max();
    EXPECT_EQ(parseSetting(*findSetting("timer.windowDuration"), formatSetting(most)), most);
    for (const char* unknown : {"", "api", "API.key", "general.pasteClipboard", "api.key "})
        EXPECT_EQ(findSetting(unknown), nullptr);
}

TEST(EnabledApplications, AMissingOrEmptyListIsWrittenAnew) {
    const Texts shipped{"net.arena.Guild-Wars-2", "orvendel.Vantor", "com.nvidia.gfnpc.mall"};
    const std::string text = "orvendel.Vantor";  // no list
    for (const Stored& stored : {Stored(), Stored(Texts{}), Stored(text), Stored(Texts{"editor"})}) {
        FakeDefaults defaults;
        if (stored) defaults.put("apps.enabled", *stored);
        const bool own = stored == Stored(Texts{"editor"});
        EXPECT_EQ(isApplicationEnabled(defaults, "editor"), own);
        EXPECT_EQ(isApplicationEnabled(defaults, "com.nvidia.gfnpc.mall"), !own);
        for (const char* other : {"com.nvidia.gfnpc", "orvendel.vantor", ""})
            EXPECT_FALSE(isApplicationEnabled(defaults, other)) << other;
        EXPECT_EQ(defaults.get<Texts>("apps.enabled"), own ? Texts{"editor"} : shipped);
        EXPECT_EQ(defaults.writes(), own ? 0 : 1);
    }
    // A store that refuses changes nothing for the question at hand.
    FakeDefaults full;
    full.failAtWrite(1);
    EXPECT_TRUE(isApplicationEnabled(full, "orvendel.Vantor"));
}

TEST(EnabledApplications, Toggling) {
    const struct {
        std::optional<Texts> stored;
        std::string current;
        Texts left;
    } rows[] = {
        {Texts{"a", "b"}, "c", {"a", "b", "c"}},
        {Texts{"a", "b", "a"}, "a", {"b", "a"}},
        {Texts{"a"}, "", {"a"}},
        // A missing list counts as empty, whatever the test for the game wrote meanwhile.
        {std::nullopt, "c", {"c"}},
        {std::nullopt, "orvendel.Vantor", {}},
        {Texts{}, "orvendel.Vantor", {}},
        {Texts{"orvendel.Vantor"}, "orvendel.Vantor", {}},
    };
    for (const auto& row : rows) {
        FakeDefaults defaults;
        if (row.stored) defaults.put("apps.enabled", *row.stored);
        toggleApplication(defaults, row.current);
        EXPECT_EQ(defaults.get<Texts>("apps.enabled"), row.left) << row.current;
    }
}

}  // namespace
}  // namespace vantor
