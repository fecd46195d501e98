#include "timers/TimerRow.h"

#include "timers/DataFault.h"
#include "timers/TimeText.h"
#include "timers/VisibleWindow.h"

namespace vantor {

namespace {

std::string orStop(std::optional<std::string> text, const TimelineEvent& occurrence) {
    if (!text)
        stopForDataFault("events catalogue, section \"" + occurrence.sectionName() + "\", event " +
                         std::to_string(occurrence.event().id) + ": its time is beyond all clocks");
    return *std::move(text);
}

}  // namespace

std::vector<TimerRow> timerRows(std::span<const TimelineEvent> timeline, int currentMinute, double windowMinutes) {
    std::vector<TimerRow> rows;
    for (const TimelineEvent& occurrence : timeline) {
        if (!isVisible(occurrence, currentMinute, windowMinutes)) continue;
        const Event& event = occurrence.event();
        TimerRow row;
        row.id = occurrence.id;
        row.time = orStop(startText(occurrence), occurrence);
        row.name = event.name;
        row.section = occurrence.sectionName();
        if (event.lfg) row.getThereBy = "get there by " + orStop(gatheringText(occurrence), occurrence) + " to LFG";
        row.remaining =
            remainingText(occurrence.startMinute <= currentMinute ? 0 : occurrence.startMinute - currentMinute);
        row.chatlink = event.chatlink.value_or(std::string());
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string remainingText(std::int64_t minutes) {
    if (minutes <= 0) return "now";
    const std::int64_t hours = minutes / 60;
    const std::string rest = std::to_string(minutes % 60);
    if (hours == 0) return rest + " min";
    if (minutes % 60 == 0) return std::to_string(hours) + " h";
    return std::to_string(hours) + " h " + (rest.size() < 2 ? "0" : "") + rest + " min";
}

}  // namespace vantor
