#include "catalogue/Layers.h"

#include <algorithm>
#include <map>

#include "catalogue/Days.h"
#include "timers/DataFault.h"
#include "timers/TimeText.h"
#include "timers/Timeline.h"

namespace vantor {

namespace {

// Start times of a UTC day, by name and chat link.
using Day = std::map<std::string, std::string>;

Day dayOf(EventsSection section) {
    section.active = true;
    const TimerFilters everything{true, true, true, true, true, true, true};
    const auto computed = computeTimeline(std::vector{section}, {}, everything, 0);
    Day day;
    if (const auto* timeline = std::get_if<Timeline>(&computed))
        for (const TimelineEvent& occurrence : timeline->events) {
            if (occurrence.startMinute >= minutesPerDay) continue;
            const Event& event = occurrence.event();
            std::string& times = day[event.name + (event.chatlink ? " " + *event.chatlink : "")];
            times += " " + startText(occurrence).value_or("");
        }
    return day;
}

void appendTimes(const Day& before, const Day& after, std::vector<std::string>& lines) {
    for (const auto& [name, times] : after)
        if (const auto old = before.find(name); old == before.end())
            lines.emplace_back("  ").append(name).append(": new, at").append(times);
        else if (old->second != times)
            lines.emplace_back("  ").append(name).append(": at").append(times).append(", was").append(old->second);
    for (const auto& [name, times] : before)
        if (!after.contains(name)) lines.emplace_back("  ").append(name).append(": gone");
}

}  // namespace

std::vector<EventsSection> layered(std::vector<EventsSection> below, const std::vector<EventsSection>& above) {
    for (const EventsSection& section : above) {
        const auto found = std::ranges::find(below, section.id, &EventsSection::id);
        if (found == below.end())
            below.push_back(section);
        else
            *found = section;
    }
    return below;
}

std::vector<EventsSection> onDay(std::vector<EventsSection> sections, std::int64_t day) {
    for (EventsSection& section : sections) {
        if (!section.from && !section.until) continue;
        // A text that is no day is never reached.
        const auto first = section.from ? dayNumber(*section.from) : day;
        const auto last = section.until ? dayNumber(*section.until) : day;
        section.active = first && last && *first <= day && day <= *last;
    }
    return sections;
}

std::vector<std::string> differences(const std::vector<EventsSection>& below, const std::vector<EventsSection>& above) {
    std::vector<std::string> lines;
    for (const EventsSection& section : above) {
        const auto found = std::ranges::find(below, section.id, &EventsSection::id);
        const std::string name = "section " + std::to_string(section.id) + " \"" + section.name + "\": ";
        if (found != below.end() && *found == section) {
            lines.push_back(name + "unchanged");
        } else {
            lines.push_back(name + (found == below.end() ? "added" : "replaced") +
                            (section.from     ? ", from " + *section.from
                             : section.until  ? ", until " + *section.until
                             : section.active ? ""
                                              : ", not active"));
            appendTimes(found == below.end() ? Day() : dayOf(*found), dayOf(section), lines);
        }
    }
    for (std::string& line : lines) line = oneLine(std::move(line));
    return lines;
}

}  // namespace vantor
