#include "app/cli/CatalogueCommand.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

#include "catalogue/CatalogueWords.h"
#include "catalogue/LayerCheck.h"
#include "catalogue/Layers.h"
#include "timers/DataFault.h"

namespace vantor {

std::optional<std::string> contentsOf(const std::string& file, std::optional<std::size_t> atMost) {
    QFile opened(QFile::decodeName(QByteArray::fromStdString(file)));
    if (!opened.open(QIODevice::ReadOnly)) return std::nullopt;
    const QByteArray contents = atMost ? opened.read(static_cast<qint64>(*atMost)) : opened.readAll();
    return opened.error() == QFileDevice::NoError ? std::optional(contents.toStdString()) : std::nullopt;
}

namespace {

CatalogueUpdates updatesOf(const LayeredCatalogue::Needs& needs) {
    return CatalogueUpdates(
        {std::make_unique<FolderUpdateFiles>(needs.updateFolder), needs.keys, needs.builtIn.version});
}

CatalogueStatus statusOf(const CatalogueUpdates& updates, const LayeredCatalogue::Needs& needs) {
    const CatalogueUpdate* const update = updates.inForce();
    return {.source = update ? CatalogueStatus::Source::update : CatalogueStatus::Source::builtIn,
            .facts = update ? update->facts : needs.builtIn};
}

}  // namespace

StoredCatalogue readStoredCatalogue(const LayeredCatalogue::Needs& needs) {
    CatalogueUpdates updates = updatesOf(needs);
    StoredCatalogue stored;
    stored.faults = updates.read();
    for (std::string& fault : stored.faults) fault = oneLine(std::move(fault));
    PlayerFiles player = readPlayerFiles(needs.playerFolder);
    stored.faults.insert(stored.faults.end(), player.faults.begin(), player.faults.end());
    stored.status = statusOf(updates, needs);
    stored.status.playerFiles = player.files;
    stored.status.playerFaults = player.faults;
    if (const CatalogueUpdate* const update = updates.inForce()) stored.above = update->sections;
    stored.above = layered(std::move(stored.above), player.sections);
    return stored;
}

int runCatalogueRollback(const LayeredCatalogue::Needs& needs, std::ostream& out, std::ostream& err) {
    CatalogueUpdates updates = updatesOf(needs);
    (void)updates.read();
    if (!updates.inForce()) {
        err << "vantor: no update of the catalogue is in use\n";
        return 1;
    }
    if (!updates.rollBack()) {
        err << "vantor: the cache folder cannot be written to\n";
        return 1;
    }
    out << "catalogue " << catalogueText(statusOf(updates, needs)) << "\n";
    return 0;
}

int runCatalogueCheck(const CheckCatalogue& request, const std::string& embeddedCatalogue,
                      const LayeredCatalogue::Needs& needs, std::ostream& out, std::ostream& err) {
    const auto refuse = [&](const std::string& what) {
        err << oneLine("vantor: " + request.file + ": " + what) << "\n";
        return 1;
    };
    const auto contents = contentsOf(request.file, largestLayer + 1);
    if (!contents) return refuse("cannot be read");
    auto sections = readLayer(*contents);
    if (!sections.value) return refuse(sections.error);
    auto below = decodeJson<std::vector<EventsSection>>(embeddedCatalogue).value.value_or(std::vector<EventsSection>());

    if (const auto signature = contentsOf(request.file + ".minisig", largestSignature + 1)) {
        const auto update = readUpdate(*signature, *contents, needs.keys, below.size());
        if (!update.value) return refuse(update.error);
        if (update.value->facts.version <= needs.builtIn.version)
            return refuse("version " + std::to_string(update.value->facts.version) +
                          " is not newer than the built-in one, " + std::to_string(needs.builtIn.version));
        out << catalogueText({.source = CatalogueStatus::Source::update, .facts = update.value->facts}) << "\n";
    } else {
        // The player's files lie over the update, too.
        CatalogueUpdates updates = updatesOf(needs);
        (void)updates.read();
        if (const CatalogueUpdate* const update = updates.inForce())
            below = layered(std::move(below), update->sections);
    }
    for (const std::string& line : differences(below, *sections.value)) out << line << "\n";
    out.flush();
    return out ? 0 : 1;
}

}  // namespace vantor
