#include "app/cli/TimelineCommand.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <iomanip>

#include "app/cli/CatalogueCommand.h"
#include "catalogue/Days.h"
#include "catalogue/Layers.h"
#include "data/Decoder.h"
#include "timers/DataFault.h"
#include "timers/ShownTimeline.h"
#include "timers/TimeText.h"
#include "timers/Timeline.h"
#include "timers/VisibleWindow.h"

namespace vantor {

namespace {

struct Row {
    const TimelineEvent& occurrence;
    std::string start;
    std::string gathering;
};

std::variant<std::vector<Row>, TimelineFault> rowsOf(std::span<const TimelineEvent> occurrences, bool asShown) {
    std::vector<Row> rows;
    for (const TimelineEvent& occurrence : occurrences) {
        if (asShown) {
            rows.push_back({occurrence, clockText(occurrence.startMinute), clockText(occurrence.gatheringMinute())});
            continue;
        }
        auto start = startText(occurrence);
        auto gathering = gatheringText(occurrence);
        if (!start || !gathering)
            return TimelineFault{occurrence.sectionName(), occurrence.scheduled->sectionId,
                                 "event " + std::to_string(occurrence.event().id), "its time is beyond all clocks"};
        rows.push_back({occurrence, *std::move(start), *std::move(gathering)});
    }
    return rows;
}

void writeJson(const std::vector<Row>& rows, std::ostream& out) {
    QJsonArray array;
    for (const Row& row : rows) {
        const Event& event = row.occurrence.event();
        array.append(
            QJsonObject{{QStringLiteral("id"), row.occurrence.id},
                        {QStringLiteral("sectionId"), qint64{row.occurrence.scheduled->sectionId}},
                        {QStringLiteral("section"), QString::fromStdString(row.occurrence.sectionName())},
                        {QStringLiteral("eventId"), qint64{event.id}},
                        {QStringLiteral("name"), QString::fromStdString(event.name)},
                        {QStringLiteral("startMinute"), qint64{row.occurrence.startMinute}},
                        {QStringLiteral("gatheringMinute"), qint64{row.occurrence.gatheringMinute()}},
                        {QStringLiteral("start"), QString::fromStdString(row.start)},
                        {QStringLiteral("gathering"), QString::fromStdString(row.gathering)},
                        {QStringLiteral("chatlink"),
                         event.chatlink ? QJsonValue(QString::fromStdString(*event.chatlink)) : QJsonValue()}});
    }
    out << QJsonDocument(array).toJson().constData();
}

void writeTable(const std::vector<Row>& rows, std::ostream& out) {
    const auto line = [&](std::string_view start, std::string_view gathering, std::string_view chatlink,
                          std::string_view section, std::string_view name) {
        out << std::left << std::setw(8) << start << std::setw(8) << gathering << std::setw(14) << chatlink;
        out << section << ": " << name << "\n";
    };
    line("start", "gather", "chat link", "section", "event");
    for (const Row& row : rows) {
        const Event& event = row.occurrence.event();
        line(row.start, event.lfg ? row.gathering : "", event.chatlink.value_or(""), row.occurrence.sectionName(),
             event.name);
    }
}

}  // namespace

int runTimeline(const PrintTimeline& request, std::string_view embeddedCatalogue, const Defaults& defaults,
                const Clock& clock, std::ostream& out, std::ostream& err, const std::vector<EventsSection>& above) {
    std::string fileText;
    if (request.catalogueFile) {
        auto contents = contentsOf(*request.catalogueFile);
        if (!contents) {
            err << oneLine("vantor: the catalogue " + *request.catalogueFile + " cannot be read") << "\n";
            return 1;
        }
        fileText = *std::move(contents);
    }
    auto sections = decodeJson<std::vector<EventsSection>>(request.catalogueFile ? fileText : embeddedCatalogue);
    if (!sections.value) {
        err << oneLine("Error filling Array<EventsSection>: " + sections.error) << "\n";
        return 1;
    }
    if (!request.catalogueFile) sections.value = layered(*std::move(sections.value), above);

    const auto dataFault = [&](const TimelineFault& fault) {
        err << oneLine("vantor: " + describe(fault)) << "\n";
        return dataFaultStatus;
    };
    const Clock::Seconds now = request.now ? resolve(*request.now, clock) : clock.now();
    sections.value = onDay(*std::move(sections.value), dayNumber(now));
    const int offset = clock.utcOffsetSeconds(now);
    auto computed = computeTimeline(*sections.value, {}, readTimerFilters(defaults), offset);
    if (const auto* fault = std::get_if<TimelineFault>(&computed)) return dataFault(*fault);
    auto occurrences = std::get<Timeline>(std::move(computed)).events;
    if (request.windowOnly)
        occurrences = visibleWindow(shownTimeline({std::move(occurrences), {}}, offset).events,
                                    currentMinute(clock, now), windowMinutes(defaults, WindowKind::shown));

    const auto rows = rowsOf(occurrences, request.windowOnly);
    if (const auto* fault = std::get_if<TimelineFault>(&rows)) return dataFault(*fault);
    (request.json ? writeJson : writeTable)(std::get<std::vector<Row>>(rows), out);
    out.flush();
    return out ? 0 : 1;
}

}  // namespace vantor
