#include "timers/OccurrenceRow.h"

#include <algorithm>
#include <utility>

#include "timers/AchievementBlock.h"
#include "timers/TimeText.h"

namespace vantor {

namespace {

std::string remainingOf(const TimelineEvent& occurrence, RowPhase phase, int now) {
    // Within the minute of its start an occurrence is still listed.
    if (occurrence.startMinute <= now) return "now";
    if (phase == RowPhase::gathering) return "gathering";
    return "in " + remainingText(occurrence.startMinute - now);
}

std::optional<std::array<int, 3>> accentOf(const Event& event) {
    if (!event.bg || event.bg->size() < 3) return std::nullopt;
    std::array<int, 3> colour{};
    for (std::size_t i = 0; i < colour.size(); ++i)
        colour[i] = static_cast<int>(std::clamp<std::int64_t>((*event.bg)[i], 0, 255));
    return colour;
}

}  // namespace

OccurrenceRow occurrenceRow(const TimelineEvent& occurrence, RowPhase phase, int now, bool watched) {
    const Event& event = occurrence.event();
    OccurrenceRow row;
    row.id = occurrence.id;
    row.phase = phase;
    row.time = clockText(occurrence.startMinute);
    row.remaining = remainingOf(occurrence, phase, now);
    row.eventName = event.name;
    row.name = event.name.empty() ? "–" : event.name;
    row.place = occurrence.sectionName();
    if (const std::string& category = occurrence.scheduled->sectionCategory; !category.empty())
        row.place += " · " + category;
    if (const auto& note = occurrence.scheduled->sectionNote) row.place += " · " + *note;
    if (event.lfg) row.getThereBy = "get there by " + clockText(occurrence.gatheringMinute()) + " to LFG";
    row.chatlink = event.chatlink.value_or(std::string());
    row.wikiPage = event.link.value_or(std::string());
    row.accent = accentOf(event);
    row.badges = rewardBadges(event);
    row.watched = watched;
    row.opens = hasBlock(event);
    return row;
}

std::string spokenText(const OccurrenceRow& row) {
    std::string text = row.time + ", " + row.name + ", " + row.remaining;
    if (row.phase == RowPhase::next) text += ", next";
    text += ", " + row.place;
    if (!row.getThereBy.empty()) text += ", " + row.getThereBy;
    for (const RewardBadge& badge : row.badges) text += ", " + std::string(badge.label);
    if (row.watched) text += ", watched";
    return text;
}

}  // namespace vantor
