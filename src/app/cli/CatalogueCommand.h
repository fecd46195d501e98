#pragma once
// `vantor --catalogue-check`: whether a catalogue file would be taken, and what it would change.
// `--catalogue-rollback`: back to the one before the last update. Neither needs a display. One thread.

#include <ostream>
#include <string>
#include <vector>

#include "app/cli/CommandLine.h"
#include "catalogue/LayeredCatalogue.h"

namespace vantor {

// Nothing when the file cannot be read; at most so many bytes where there is a limit.
[[nodiscard]] std::optional<std::string> contentsOf(const std::string& file,
                                                    std::optional<std::size_t> atMost = std::nullopt);

// What a start of the program would compute with over the embedded catalogue.
struct StoredCatalogue {
    CatalogueStatus status;
    std::vector<EventsSection> above;
    std::vector<std::string> faults;  // one line each
};
[[nodiscard]] StoredCatalogue readStoredCatalogue(const LayeredCatalogue::Needs& needs);

// The exit status: 0 and the catalogue that counts now, or 1 and one line on `err`.
[[nodiscard]] int runCatalogueRollback(const LayeredCatalogue::Needs& needs, std::ostream& out, std::ostream& err);

// The exit status: 0 and what would change, or 1 and one line on `err`. A file with a signature beside it is checked as
// an update, any other as the player's.
[[nodiscard]] int runCatalogueCheck(const CheckCatalogue& request, const std::string& embeddedCatalogue,
                                    const LayeredCatalogue::Needs& needs, std::ostream& out, std::ostream& err);

}  // namespace vantor
