#pragma once
// The records of the game's web API, under the API's own keys (its spelling and this system's are kept). Values, any
// thread.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/Fields.h"

namespace vantor {

// One entry of the player's achievement progress.
struct AchievementCompletition {
    std::int64_t id = 0;
    std::optional<std::vector<std::int64_t>> bits;  // indices of completed parts
    std::int64_t current = 0;
    std::int64_t max = 0;
    bool done = false;
    std::optional<bool> unlocked;
    std::optional<std::int64_t> repeated;  // times

    bool operator==(const AchievementCompletition&) const = default;
};

template <>
struct Fields<AchievementCompletition> {
    static constexpr auto table =
        std::tuple(Field{"id", &AchievementCompletition::id}, Field{"bits", &AchievementCompletition::bits},
                   Field{"current", &AchievementCompletition::current}, Field{"max", &AchievementCompletition::max},
                   Field{"done", &AchievementCompletition::done}, Field{"unlocked", &AchievementCompletition::unlocked},
                   Field{"repeated", &AchievementCompletition::repeated});
};

struct Account {
    std::string id;
    std::string name;
    std::int64_t age = 0;
    std::int64_t world = 0;
    std::string created;
    std::vector<std::string> access;
    std::vector<std::string> guilds;
    bool commander = false;
    std::int64_t fractal_level = 0;
    std::int64_t daily_ap = 0;
    std::int64_t monthly_ap = 0;
    std::int64_t wvw_rank = 0;

    bool operator==(const Account&) const = default;
};

template <>
struct Fields<Account> {
    static constexpr auto table = std::tuple(
        Field{"id", &Account::id}, Field{"name", &Account::name}, Field{"age", &Account::age},
        Field{"world", &Account::world}, Field{"created", &Account::created}, Field{"access", &Account::access},
        Field{"guilds", &Account::guilds}, Field{"commander", &Account::commander},
        Field{"fractal_level", &Account::fractal_level}, Field{"daily_ap", &Account::daily_ap},
        Field{"monthly_ap", &Account::monthly_ap}, Field{"wvw_rank", &Account::wvw_rank});
};

struct Achievement {
    std::int64_t id = 0;
    std::string name;
    std::string description;
    std::string requirement;
    std::string locked_text;
    std::string type;
    std::vector<std::string> flags;

    bool operator==(const Achievement&) const = default;
};

template <>
struct Fields<Achievement> {
    static constexpr auto table =
        std::tuple(Field{"id", &Achievement::id}, Field{"name", &Achievement::name},
                   Field{"description", &Achievement::description}, Field{"requirement", &Achievement::requirement},
                   Field{"locked_text", &Achievement::locked_text}, Field{"type", &Achievement::type},
                   Field{"flags", &Achievement::flags});
};

struct AchievementCategory {
    std::int64_t id = 0;
    std::string name;
    std::string description;
    std::int64_t order = 0;
    std::string icon;
    std::vector<std::int64_t> achievements;

    bool operator==(const AchievementCategory&) const = default;
};

template <>
struct Fields<AchievementCategory> {
    static constexpr auto table = std::tuple(
        Field{"id", &AchievementCategory::id}, Field{"name", &AchievementCategory::name},
        Field{"description", &AchievementCategory::description}, Field{"order", &AchievementCategory::order},
        Field{"icon", &AchievementCategory::icon}, Field{"achievements", &AchievementCategory::achievements});
};

struct RaidEvent {
    std::string id;
    std::string type;

    bool operator==(const RaidEvent&) const = default;
};

template <>
struct Fields<RaidEvent> {
    static constexpr auto table = std::tuple(Field{"id", &RaidEvent::id}, Field{"type", &RaidEvent::type});
};

struct RaidWing {
    std::string id;
    std::vector<RaidEvent> events;

    bool operator==(const RaidWing&) const = default;
};

template <>
struct Fields<RaidWing> {
    static constexpr auto table = std::tuple(Field{"id", &RaidWing::id}, Field{"events", &RaidWing::events});
};

struct Raid {
    std::string id;
    std::vector<RaidWing> wings;

    bool operator==(const Raid&) const = default;
};

template <>
struct Fields<Raid> {
    static constexpr auto table = std::tuple(Field{"id", &Raid::id}, Field{"wings", &Raid::wings});
};

}  // namespace vantor
