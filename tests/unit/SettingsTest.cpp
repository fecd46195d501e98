// Settings by name and text, and the list of applications that count as the game.
#include <gmock/gmock.h>

#include <limits>

#include "app/EnabledApplications.h"
#include "app/Settings.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"

namespace vantor {

namespace {

using Texts = std::vector<std::string>;
using testing::Optional;

const Texts defaultApplications = {"net.arena.Guild-Wars-2", "orvendel.Vantor", "com.nvidia.gfnpc.mall"};

std::optional<Texts> storedApplications(const FakeDefaults& defaults) { return defaults.get<Texts>("apps.enabled"); }

}  // namespace

TEST(Settings, TextIsReadByTheKeysType) {
    const struct {
        const char* key;
        const char* text;
        std::optional<SettingValue> value;
    } rows[] = {
        {"general.pasteClipoard", "true", true},
        {"general.enableChatLinkReturnKey", "false", false},
        {"timer.isEvent", "yes", std::nullopt},
        {"timer.isEvent", "1", std::nullopt},
        {"timer.isEvent", "", std::nullopt},
        {"timer.windowDuration", "2.5", 2.5},
        {"timer.windowDuration", "3", 3.0},
        {"timer.windowDuration", "1e400", std::nullopt},
        {"timer.windowDuration", "nan", std::nullopt},
        {"timer.windowDuration", "3,5", std::nullopt},
        {"timer.watchedWindowDuration", "", std::nullopt},
        {"api.key", "true", std::string("true")},
        {"api.key", "", std::string()},
        {"general.windowToggleEvent", "⌘ + ⇧ + T", std::string("⌘ + ⇧ + T")},
        {"events.watching", "no list", std::string("no list")},
        {"apps.enabled", "a, b,,a", Texts{"a", "b", "a"}},
        {"apps.enabled", R"(["a, b", "ü"])", Texts{"a, b", "ü"}},
        {"apps.enabled", " ", Texts{}},
        {"apps.enabled", "[1]", std::nullopt},
        {"apps.enabled", "[\"a\"", std::nullopt},
    };
    for (const auto& row : rows) {
        const Setting* setting = findSetting(row.key);
        ASSERT_NE(setting, nullptr) << row.key;
        EXPECT_EQ(parseSetting(*setting, row.text), row.value) << row.key << "=" << row.text;
    }
    for (const char* unknown : {"", "api", "API.key", "general.pasteClipboard", "api.key "})
        EXPECT_EQ(findSetting(unknown), nullptr);
}

TEST(Settings, WhatIsPrintedIsReadBackAsTheSameValue) {
    const std::pair<const char*, SettingValue> rows[] = {
        {"timer.isEvent", true},
        {"timer.windowDuration", 0.1},
        {"timer.windowDuration", std::numeric_limits<double>::max()},
        {"api.key", std::string("a=b \"c\"")},
        {"apps.enabled", Texts{"a,b", " ", "[", "\"\\", "⌘"}},
        {"apps.enabled", Texts{}},
    };
    for (const auto& [key, value] : rows) {
        const std::string text = formatSetting(value);
        EXPECT_THAT(parseSetting(*findSetting(key), text), Optional(value)) << text;
    }
}

TEST(EnabledApplications, AMissingOrEmptyListIsWrittenAnew) {
    for (const std::optional<SettingValue>& stored :
         {std::optional<SettingValue>(), std::optional<SettingValue>(Texts{}),
          std::optional<SettingValue>(std::string("orvendel.Vantor"))}) {
        FakeDefaults defaults;
        if (stored) defaults.put("apps.enabled", *stored);
        EXPECT_TRUE(isApplicationEnabled(defaults, "com.nvidia.gfnpc.mall"));
        EXPECT_FALSE(isApplicationEnabled(defaults, "com.nvidia.gfnpc"));
        EXPECT_FALSE(isApplicationEnabled(defaults, "orvendel.vantor"));
        EXPECT_FALSE(isApplicationEnabled(defaults, ""));
        EXPECT_EQ(storedApplications(defaults), defaultApplications);
        EXPECT_EQ(defaults.writes(), 1);
    }
    FakeDefaults own;
    own.put("apps.enabled", Texts{"editor"});
    EXPECT_FALSE(isApplicationEnabled(own, "net.arena.Guild-Wars-2"));
    EXPECT_TRUE(isApplicationEnabled(own, "editor"));
    EXPECT_EQ(own.writes(), 0);

    // A store that refuses changes nothing for the question at hand.
    FakeDefaults full;
    full.failAtWrite(1);
    EXPECT_TRUE(isApplicationEnabled(full, "orvendel.Vantor"));
    EXPECT_EQ(storedApplications(full), std::nullopt);
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
        EXPECT_EQ(storedApplications(defaults), row.left) << row.current;
    }
}

}  // namespace vantor
