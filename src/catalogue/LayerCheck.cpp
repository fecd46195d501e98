#include "catalogue/LayerCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>

#include "catalogue/Days.h"
#include "timers/Timeline.h"

namespace vantor {

namespace {

using Fault = std::optional<std::string>;

constexpr std::int64_t highestId = 99;
// Of all sections together. A real day takes some two thousand; 105 zones must be computed within a moment.
constexpr std::int64_t stepsPerDay = 50'000;
// Beyond any real schedule, and within what a clock can show.
constexpr double furthestMinute = 100'000;
constexpr int quarterHour = 15 * 60;
constexpr int westernmost = -12 * 60 * 60;
constexpr int easternmost = 14 * 60 * 60;

std::string place(const char* name, std::size_t index) { return std::string(name) + "[" + std::to_string(index) + "]"; }

Fault idFault(std::int64_t id, std::set<std::int64_t>& known, const std::string& where) {
    if (id < 0 || id > highestId) return where + ".id: " + std::to_string(id) + " is not from 0 to 99";
    if (!known.insert(id).second) return where + ".id: " + std::to_string(id) + " is there twice";
    return std::nullopt;
}

// The sum of the steps' minutes, which stays at the largest number once it would pass it.
std::int64_t minutesOf(const std::vector<EventTimelineData>& steps) {
    std::int64_t sum = 0;
    for (const EventTimelineData& step : steps)
        if (__builtin_add_overflow(sum, step.durationMinutes, &sum)) return std::numeric_limits<std::int64_t>::max();
    return sum;
}

Fault stepsFault(const std::vector<EventTimelineData>& steps, const std::string& where) {
    for (std::size_t index = 0; index < steps.size(); ++index)
        if (steps[index].durationMinutes < 0) return place(where.c_str(), index) + ".d: below 0";
    return std::nullopt;
}

Fault sectionFault(const EventsSection& section, const std::string& where, std::int64_t& stepsLeft) {
    std::set<std::int64_t> events;
    for (std::size_t index = 0; index < section.segments.size(); ++index) {
        const std::string segment = place((where + ".segments").c_str(), index);
        const Event& event = section.segments[index];
        if (auto fault = idFault(event.id, events, segment)) return fault;
        if (event.lfg && (*event.lfg < 0 || *event.lfg > minutesPerDay))
            return segment + ".lfg: not from 0 to " + std::to_string(minutesPerDay);
    }
    for (const auto& [name, day] : {std::pair(".from", section.from), std::pair(".until", section.until)})
        if (day && !dayNumber(*day)) return where + name + ": no day such as 2026-10-13";
    const auto& [partial, pattern] = section.sequences;
    if (auto fault = stepsFault(partial, where + ".sequences.partial")) return fault;
    if (auto fault = stepsFault(pattern, where + ".sequences.pattern")) return fault;
    const std::int64_t pass = minutesOf(pattern);
    if (pass <= 0) return where + ".sequences.pattern: does not advance";
    const std::int64_t passes = minutesPerDay / pass + 1;
    stepsLeft -= static_cast<std::int64_t>(partial.size()) + passes * static_cast<std::int64_t>(pattern.size());
    if (stepsLeft < 0)
        return where + ".sequences: the day takes more than " + std::to_string(stepsPerDay) + " steps up to here";
    return std::nullopt;
}

Fault scheduleFault(std::vector<EventsSection> sections) {
    for (EventsSection& section : sections) section.active = true;
    const TimerFilters everything{true, true, true, true, true, true, true};
    for (int offset = westernmost; offset <= easternmost; offset += quarterHour) {
        const auto computed = computeTimeline(sections, {}, everything, offset);
        if (const auto* fault = std::get_if<TimelineFault>(&computed)) {
            const auto section = std::ranges::find(sections, fault->sectionId, &EventsSection::id);
            const auto index = static_cast<std::size_t>(section - sections.begin());
            return place("", index) + "." + fault->stepPlace + ": " + fault->what;
        }
        const auto& events = std::get<Timeline>(computed).events;
        if (!events.empty() && std::abs(events.back().id) > furthestMinute)
            return "section " + std::to_string(events.back().scheduled->sectionId) + ": its times are beyond all days";
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> layerFault(const std::vector<EventsSection>& sections) {
    std::set<std::int64_t> known;
    std::int64_t stepsLeft = stepsPerDay;
    for (std::size_t index = 0; index < sections.size(); ++index) {
        const std::string where = place("", index);
        if (auto fault = idFault(sections[index].id, known, where)) return fault;
        if (auto fault = sectionFault(sections[index], where, stepsLeft)) return fault;
    }
    return scheduleFault(sections);
}

Decoded<std::vector<EventsSection>> readLayer(std::string_view body) {
    if (body.size() > largestLayer) return {std::nullopt, "document: larger than 1 MiB"};
    auto decoded = decodeJson<std::vector<EventsSection>>(body);
    if (!decoded.value) return decoded;
    if (auto fault = layerFault(*decoded.value)) return {std::nullopt, *std::move(fault)};
    return decoded;
}

}  // namespace vantor
