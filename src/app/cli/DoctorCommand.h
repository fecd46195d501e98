#pragma once
// What `vantor --doctor` prints. Pure.

#include <string>
#include <vector>

#include "app/cli/CatalogueCommand.h"
#include "platform/Capability.h"

namespace vantor {

struct DoctorRow {
    std::string name;
    bool present = false;
    std::string sentence;
};

// What there is to say of the catalogue: the one in force, and each file that does not hold.
[[nodiscard]] std::vector<DoctorRow> catalogueRows(const StoredCatalogue& stored);

// One line for each, with a line feed at its end.
[[nodiscard]] std::string capabilitiesAsText(const std::vector<Capability>& capabilities,
                                             const std::vector<DoctorRow>& more = {});

}  // namespace vantor
