#pragma once
// The records of the events catalogue and the bestiary, under the keys of their files. Values, any thread.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/Fields.h"

namespace vantor {

struct ItemForAchievement {
    std::int64_t i = 0;  // item id
    std::int64_t a = 0;  // the achievement that the item counts toward

    bool operator==(const ItemForAchievement&) const = default;
};

template <>
struct Fields<ItemForAchievement> {
    static constexpr auto table = std::tuple(Field{"i", &ItemForAchievement::i}, Field{"a", &ItemForAchievement::a});
};

// Whether a list is there matters, not only what is in it: an empty one counts as present.
struct EventRewards {
    std::optional<std::vector<std::int64_t>> achievements;
    std::optional<std::vector<std::int64_t>> items;
    std::optional<std::vector<ItemForAchievement>> items_for_achievements;
    std::optional<std::vector<std::int64_t>> random_items;

    bool operator==(const EventRewards&) const = default;
};

template <>
struct Fields<EventRewards> {
    static constexpr auto table =
        std::tuple(Field{"achievements", &EventRewards::achievements}, Field{"items", &EventRewards::items},
                   Field{"items_for_achievements", &EventRewards::items_for_achievements},
                   Field{"random_items", &EventRewards::random_items});
};

struct Event {
    std::int64_t id = 0;  // within the section, below 100
    std::string name;     // empty for a gap or a plain phase of a cycle
    std::optional<std::string> link;
    std::optional<std::string> icon;
    std::optional<std::string> chatlink;  // its presence makes the entry an event rather than a timer
    std::optional<std::vector<std::int64_t>> bg;
    std::optional<EventRewards> rewards;
    std::optional<std::int64_t> lfg;  // minutes before the start at which players gather

    bool operator==(const Event&) const = default;
};

template <>
struct Fields<Event> {
    static constexpr auto table =
        std::tuple(Field{"id", &Event::id}, Field{"name", &Event::name}, Field{"link", &Event::link},
                   Field{"icon", &Event::icon}, Field{"chatlink", &Event::chatlink}, Field{"bg", &Event::bg},
                   Field{"rewards", &Event::rewards}, Field{"lfg", &Event::lfg});
};

// One step of a schedule.
struct EventTimelineData {
    std::int64_t eventId = 0;
    std::int64_t durationMinutes = 0;  // to the next step's start

    bool operator==(const EventTimelineData&) const = default;
};

template <>
struct Fields<EventTimelineData> {
    static constexpr auto table =
        std::tuple(Field{"r", &EventTimelineData::eventId}, Field{"d", &EventTimelineData::durationMinutes});
};

struct EventsSequence {
    std::vector<EventTimelineData> partial;  // played once, from 00:00 UTC
    std::vector<EventTimelineData> pattern;  // repeated in whole passes after that

    bool operator==(const EventsSequence&) const = default;
};

template <>
struct Fields<EventsSequence> {
    static constexpr auto table =
        std::tuple(Field{"partial", &EventsSequence::partial}, Field{"pattern", &EventsSequence::pattern});
};

struct EventsSection {
    std::int64_t id = 0;  // below 100
    std::string category;
    std::string name;
    bool active = false;
    std::optional<std::string> link;
    std::vector<Event> segments;
    EventsSequence sequences;
    std::optional<std::string> note{};  // shown with each of its rows
    // The first and the last day, such as "2026-10-13", of a section that comes and goes: they decide in place of
    // `active`, which readers that do not know them go by.
    std::optional<std::string> from{};
    std::optional<std::string> until{};

    bool operator==(const EventsSection&) const = default;
};

template <>
struct Fields<EventsSection> {
    static constexpr auto table =
        std::tuple(Field{"id", &EventsSection::id}, Field{"category", &EventsSection::category},
                   Field{"name", &EventsSection::name}, Field{"active", &EventsSection::active},
                   Field{"link", &EventsSection::link}, Field{"segments", &EventsSection::segments},
                   Field{"sequences", &EventsSection::sequences}, Field{"note", &EventsSection::note},
                   Field{"from", &EventsSection::from}, Field{"until", &EventsSection::until});
};

// One creature family.
struct BeastRace {
    std::string id;
    std::string icon;
    std::string description;
    std::optional<std::int64_t> unlock;  // the achievement that tracks the family
    std::string unlock_txt;

    bool operator==(const BeastRace&) const = default;
};

template <>
struct Fields<BeastRace> {
    static constexpr auto table = std::tuple(
        Field{"id", &BeastRace::id}, Field{"icon", &BeastRace::icon}, Field{"description", &BeastRace::description},
        Field{"unlock", &BeastRace::unlock}, Field{"unlock_txt", &BeastRace::unlock_txt});
};

struct BeastCategory {
    std::string id;
    std::vector<BeastRace> races;

    bool operator==(const BeastCategory&) const = default;
};

template <>
struct Fields<BeastCategory> {
    static constexpr auto table = std::tuple(Field{"id", &BeastCategory::id}, Field{"races", &BeastCategory::races});
};

}  // namespace vantor
