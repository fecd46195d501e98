#include "catalogue/LayeredCatalogue.h"

#include <algorithm>
#include <utility>

#include "catalogue/Days.h"
#include "catalogue/Layers.h"
#include "timers/DataFault.h"

namespace vantor {

namespace {

constexpr const char* specialEvents = "Special Events";

}  // namespace

LayeredCatalogue::LayeredCatalogue(Needs needs, const Defaults& defaults, const Clock& clock, PrintLine printLine,
                                   std::function<void()> updated)
    : needs_(std::move(needs)),
      printLine_(std::move(printLine)),
      updated_(std::move(updated)),
      updates_({std::make_unique<FolderUpdateFiles>(needs_.updateFolder), needs_.keys, needs_.builtIn.version}),
      clock_(clock),
      fetch_({.host = needs_.host,
              .download = needs_.download,
              .defaults = defaults,
              .clock = clock,
              .random = needs_.random,
              .etag = [this] { return updates_.etag(); },
              .wants = [this](const std::string& signature) { return wants(signature); },
              .offer = [this](const std::string& signature, const std::string& body,
                              const std::string& etag) { offer(signature, body, etag); },
              .printLine = printLine_}) {
    publish();
}

void LayeredCatalogue::read() {
    updateFault_.clear();
    for (const std::string& fault : updates_.read()) {
        updateFault_ = oneLine(fault);
        printLine_(updateFault_);
    }
    readPlayerFiles();
}

void LayeredCatalogue::readPlayerFiles() {
    player_ = vantor::readPlayerFiles(needs_.playerFolder);
    for (const std::string& fault : player_.faults) printLine_("Error in your catalogue file " + fault);
    publish();
}

bool LayeredCatalogue::wants(const std::string& signature) {
    const auto wanted = updates_.wants(signature);
    if (!wanted.value) refuse(wanted.error);
    return wanted.value.value_or(false);
}

void LayeredCatalogue::offer(const std::string& signature, const std::string& body, const std::string& etag) {
    const auto taken = updates_.offer(signature, body, etag, sectionsNow());
    if (!taken.value) return refuse(taken.error);
    updateFault_.clear();
    publish();
    updated_();
}

void LayeredCatalogue::refuse(const std::string& error) {
    updateFault_ = oneLine("The catalogue update was refused: " + error);
    printLine_(updateFault_);
    publish();
}

std::size_t LayeredCatalogue::sectionsNow() const {
    if (const CatalogueUpdate* const update = updates_.inForce()) return update->sections.size();
    if (embeddedSections_ > 0 || !needs_.embedded) return embeddedSections_;
    const auto embedded = decodeJson<std::vector<EventsSection>>(needs_.embedded());
    return embedded.value ? embedded.value->size() : 0;
}

bool LayeredCatalogue::rollBack() {
    if (!updates_.rollBack()) return false;
    publish();
    return true;
}

std::vector<EventsSection> LayeredCatalogue::over(const std::vector<EventsSection>& embedded) {
    embeddedSections_ = embedded.size();
    // Nothing is shown before the embedded one is loaded, which waits for the key.
    if (embedded.empty()) return embedded;
    const CatalogueUpdate* const update = updates_.inForce();
    day_ = dayNumber(clock_.now());
    auto sections = onDay(layered(update ? layered(embedded, update->sections) : embedded, player_.sections), day_);
    dated_ = std::ranges::any_of(sections, [](const auto& each) { return each.from || each.until; });
    festivals_ = std::ranges::any_of(sections, [this](const EventsSection& each) {
        if (each.category != specialEvents) return false;
        const auto last = dayNumber(each.until.value_or(std::string()));
        return each.active || (each.from && (!last || *last >= day_));
    });
    publish();
    return sections;
}

std::shared_ptr<const CatalogueStatus> LayeredCatalogue::status() const {
    const std::lock_guard lock(mutex_);
    return status_;
}

void LayeredCatalogue::publish() {
    const CatalogueUpdate* const update = updates_.inForce();
    auto status = std::make_shared<const CatalogueStatus>(
        CatalogueStatus{.source = update ? CatalogueStatus::Source::update : CatalogueStatus::Source::builtIn,
                        .facts = update ? update->facts : needs_.builtIn,
                        .fetches = !needs_.host.empty(),
                        .day = day_,
                        .dated = dated_,
                        .festivals = festivals_,
                        .updateFault = updateFault_,
                        .playerFiles = player_.files,
                        .playerFaults = player_.faults});
    const std::lock_guard lock(mutex_);
    status_ = std::move(status);
}

}  // namespace vantor
