#include "timers/Bestiary.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

BeastRace race(std::string id, std::optional<std::int64_t> unlock, std::string description = "Lives here.") {
    return {std::move(id), "race_" + id, std::move(description), unlock, "Kill many."};
}

TEST(Bestiary, TellsCompletedOpenAndUntrackedFamiliesApart) {
    const std::vector<BeastCategory> categories{
        {"animals", {race("bat", 1), race("drake", 2), race("cow", {})}}, {"undead", {race("lich", 3)}}, {"empty", {}}};
    AchievementCompletition done{1, {}, 1000, 1000, true, {}, {}};
    AchievementCompletition begun{2, {}, 250, 1000, false, {}, {}};
    const auto sections = bestiarySections(categories, progressById({done, begun}), WordSearch());
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
}

TEST(Bestiary, IsNarrowedByTheSearch) {
    const std::vector<BeastCategory> categories{
        {"animals", {race("bat", 1, "Winged hunters of the dark."), race("drake", 2)}},
        {"undead", {race("sons_of_lich", 3)}}};
    const auto found = [&](const char* query) {
        std::string ids;
        for (const BestiarySection& section : bestiarySections(categories, {}, WordSearch(query)))
            for (const BestiaryFamily& family : section.families) ids += section.id + "/" + family.id + " ";
        return ids;
    };
    EXPECT_EQ(found("BAT"), "animals/bat ");
    EXPECT_EQ(found("dark winged"), "animals/bat ");
    EXPECT_EQ(found("animals lives"), "animals/drake ");
    EXPECT_EQ(found("kill"), "animals/bat animals/drake undead/sons_of_lich ");
    EXPECT_EQ(found("of lich sons"), "undead/sons_of_lich ");
    EXPECT_EQ(found("dragon"), "");
}

}  // namespace
}  // namespace vantor
