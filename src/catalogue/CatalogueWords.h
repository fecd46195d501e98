#pragma once
// What the player reads of the catalogue's state. Pure; any thread.

#include <string>

#include "catalogue/LayeredCatalogue.h"

namespace vantor {

// "version 7 of 3 September 2026, a signed update", or built in.
[[nodiscard]] std::string catalogueText(const CatalogueStatus& status);
// "times of 3 September" once the catalogue's days are over, else empty.
[[nodiscard]] std::string agedText(const CatalogueFacts& facts, Clock::Seconds now);
// "Your own files: mine.json", or that there are none.
[[nodiscard]] std::string playerFilesText(const CatalogueStatus& status);
// Beside the switch for special events: that none has dates, else empty.
[[nodiscard]] std::string festivalsText(const CatalogueStatus& status);

}  // namespace vantor
