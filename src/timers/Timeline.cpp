#include "timers/Timeline.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace vantor {

namespace {

using AchievementIds = std::unordered_set<std::int64_t>;

// Of all sections together. A day takes some thousands; a schedule that starts years ago, or a damaged file, could take
// all memory before its end is seen.
constexpr std::size_t stepLimit = 2'000'000;
constexpr std::string_view specialEvents = "Special Events";

struct Inclusion {
    const TimerFilters& filters;
    const AchievementIds& completed;

    [[nodiscard]] bool operator()(const Event& event, const EventsSection& section) const {
        if (filters.isTimer && !event.name.empty()) return true;
        if (filters.isEvent && event.chatlink) return true;
        if (!event.rewards) return false;
        const EventRewards& rewards = *event.rewards;
        if (filters.hasGuaranteedItems && rewards.items) return true;
        if (filters.dropsItems && rewards.random_items) return true;
        if (filters.hasAchievements && rewards.achievements && !allCompleted(*rewards.achievements)) return true;
        if (filters.dropsCollectionsItems && rewards.items_for_achievements) return true;
        return filters.isSpecialEvent && section.category == specialEvents;
    }

private:
    [[nodiscard]] bool allCompleted(const std::vector<std::int64_t>& achievements) const {
        return std::ranges::all_of(achievements, [&](std::int64_t id) { return completed.contains(id); });
    }
};

// Walks one section's schedule and appends its occurrences. The fault, if any, is found in the order of the walk, so a
// broken step that is never reached is none.
class SectionWalk {
public:
    SectionWalk(const EventsSection& section, const Inclusion& include, std::int64_t offsetMinutes,
                std::size_t& stepsTaken, std::vector<TimelineEvent>& occurrences)
        : section_(section),
          include_(include),
          start_(offsetMinutes),
          horizon_(offsetMinutes + minutesPerDay),
          stepsTaken_(stepsTaken),
          entries_(section.segments.size()),
          occurrences_(occurrences) {
        indexOf_.reserve(section.segments.size());
        // emplace keeps the first of equal ids
        for (std::size_t index = 0; index < section.segments.size(); ++index)
            indexOf_.emplace(section.segments[index].id, index);
    }

    [[nodiscard]] std::optional<TimelineFault> run() {
        if (auto fault = play(section_.sequences.partial, "sequences.partial")) return fault;
        const std::vector<Slot> pattern = slotsOf(section_.sequences.pattern);
        do {
            const std::int64_t passStart = start_;
            if (auto fault = play(pattern, "sequences.pattern")) return fault;
            if (horizon_ >= start_ && start_ <= passStart)
                return fault("sequences.pattern", "the pattern does not advance and the day never ends");
        } while (horizon_ >= start_);
        return std::nullopt;
    }

private:
    struct Entry {
        bool decided = false;
        std::shared_ptr<const ScheduledEvent> scheduled;  // null when the event stays out
    };
    struct Slot {
        const EventTimelineData* step;
        std::optional<std::size_t> segment;
    };

    [[nodiscard]] std::vector<Slot> slotsOf(const std::vector<EventTimelineData>& steps) const {
        std::vector<Slot> slots;
        slots.reserve(steps.size());
        for (const EventTimelineData& step : steps) {
            const auto found = indexOf_.find(step.eventId);
            slots.push_back({&step, found == indexOf_.end() ? std::nullopt : std::optional(found->second)});
        }
        return slots;
    }

    [[nodiscard]] std::optional<TimelineFault> play(const std::vector<EventTimelineData>& steps,
                                                    std::string_view sequence) {
        return play(slotsOf(steps), sequence);
    }

    [[nodiscard]] std::optional<TimelineFault> play(const std::vector<Slot>& slots, std::string_view sequence) {
        for (std::size_t place = 0; place < slots.size(); ++place) {
            const Slot& slot = slots[place];
            const auto faultHere = [&](std::string what) {
                return fault(std::string(sequence) + "[" + std::to_string(place) + "]", std::move(what));
            };
            if (++stepsTaken_ > stepLimit)
                return faultHere("the day's schedules take more than " + std::to_string(stepLimit) + " steps");
            if (!slot.segment) return faultHere("the section has no event " + std::to_string(slot.step->eventId));
            if (const auto& scheduled = entry(*slot.segment))
                if (!append(scheduled)) return faultHere("the gathering minute overflows");
            if (__builtin_add_overflow(start_, slot.step->durationMinutes, &start_))
                return faultHere("the start minute overflows");
        }
        return std::nullopt;
    }

    [[nodiscard]] bool append(const std::shared_ptr<const ScheduledEvent>& scheduled) {
        std::int64_t gathering = 0;
        if (__builtin_sub_overflow(start_, scheduled->event.lfg.value_or(0), &gathering)) return false;
        occurrences_.push_back({packedId(gathering, section_.id, scheduled->event.id), start_, scheduled});
        return true;
    }

    // Decided and copied once per event, and only for an event that the schedule uses.
    [[nodiscard]] const std::shared_ptr<const ScheduledEvent>& entry(std::size_t segment) {
        Entry& entry = entries_[segment];
        if (!entry.decided) {
            entry.decided = true;
            const Event& event = section_.segments[segment];
            if (include_(event, section_))
                entry.scheduled = std::make_shared<const ScheduledEvent>(
                    ScheduledEvent{event, section_.id, section_.name, section_.category, section_.note});
        }
        return entry.scheduled;
    }

    [[nodiscard]] TimelineFault fault(std::string stepPlace, std::string what) const {
        return {section_.name, section_.id, std::move(stepPlace), std::move(what)};
    }

    const EventsSection& section_;
    const Inclusion& include_;
    std::int64_t start_;
    const std::int64_t horizon_;
    std::size_t& stepsTaken_;
    std::unordered_map<std::int64_t, std::size_t> indexOf_;
    std::vector<Entry> entries_;
    std::vector<TimelineEvent>& occurrences_;
};

void appendAchievementIds(const EventsSection& section, std::vector<std::int64_t>& ids) {
    for (const Event& event : section.segments) {
        if (!event.rewards) continue;
        if (const auto& achievements = event.rewards->achievements)
            ids.insert(ids.end(), achievements->begin(), achievements->end());
        if (const auto& collected = event.rewards->items_for_achievements)
            for (const ItemForAchievement& item : *collected) ids.push_back(item.a);
    }
}

// Only those that the catalogue names: a player's progress has thousands of records, the catalogue names a few dozen.
AchievementIds completedOf(std::span<const AchievementCompletition> progress, const std::vector<std::int64_t>& named) {
    const AchievementIds wanted(named.begin(), named.end());
    AchievementIds completed;
    for (const AchievementCompletition& record : progress)
        if (record.done && wanted.contains(record.id)) completed.insert(record.id);
    return completed;
}

}  // namespace

std::string describe(const TimelineFault& fault) {
    return "events catalogue, section " + std::to_string(fault.sectionId) + " \"" + fault.sectionName + "\", " +
           fault.stepPlace + ": " + fault.what;
}

std::variant<Timeline, TimelineFault> computeTimeline(std::span<const EventsSection> sections,
                                                      std::span<const AchievementCompletition> progress,
                                                      const TimerFilters& filters, int utcOffsetSeconds) {
    Timeline timeline;
    for (const EventsSection& section : sections)
        if (section.active) appendAchievementIds(section, timeline.achievementIds);

    const AchievementIds completed = completedOf(progress, timeline.achievementIds);
    const Inclusion include{filters, completed};
    std::size_t stepsTaken = 0;
    for (const EventsSection& section : sections)
        if (section.active)
            if (auto fault = SectionWalk(section, include, utcOffsetSeconds / 60, stepsTaken, timeline.events).run())
                return *std::move(fault);

    // One section comes in order already.
    if (!std::ranges::is_sorted(timeline.events, {}, &TimelineEvent::id))
        std::ranges::stable_sort(timeline.events, {}, &TimelineEvent::id);
    return timeline;
}

}  // namespace vantor
