#pragma once
// One occurrence of an event on the timeline. A value: what the occurrences of one event have in common is shared and
// never changes, so copies are cheap and may go to any thread.

#include <cstdint>
#include <memory>
#include <string>

#include "data/Catalogue.h"

namespace vantor {

// A catalogue event and what its occurrences need to know of the section around it.
struct ScheduledEvent {
    Event event;
    std::int64_t sectionId = 0;
    std::string sectionName;
    std::string sectionCategory;
    std::optional<std::string> sectionNote{};

    bool operator==(const ScheduledEvent&) const = default;
};

inline constexpr std::int64_t minutesPerDay = 1440;

// The order of these additions is part of the identity: another one rounds differently.
[[nodiscard]] inline double packedId(std::int64_t gatheringMinute, std::int64_t sectionId, std::int64_t eventId) {
    const double eventPart = static_cast<double>(eventId) / 10000.0;
    const double sectionPart = static_cast<double>(sectionId) / 100.0;
    return eventPart + sectionPart + static_cast<double>(gatheringMinute);
}

struct TimelineEvent {
    // Minutes from local midnight at which players gather, with the section's and the event's id packed in the
    // fraction.
    double id = 0;
    // Minutes from local midnight; whole, where `id` is only near.
    std::int64_t startMinute = 0;
    std::shared_ptr<const ScheduledEvent> scheduled;  // never null

    [[nodiscard]] const Event& event() const { return scheduled->event; }
    [[nodiscard]] const std::string& sectionName() const { return scheduled->sectionName; }
    [[nodiscard]] std::int64_t gatheringMinute() const { return startMinute - event().lfg.value_or(0); }
    // The start in the frame of `id`, which is what the time texts and the visible window go by.
    [[nodiscard]] double start() const { return id + static_cast<double>(event().lfg.value_or(0)); }

    // Same occurrence of an equal event, whether or not the two share it.
    friend bool operator==(const TimelineEvent& left, const TimelineEvent& right) {
        return left.id == right.id && left.startMinute == right.startMinute &&
               (left.scheduled == right.scheduled || *left.scheduled == *right.scheduled);
    }
};

}  // namespace vantor
