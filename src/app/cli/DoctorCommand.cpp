#include "app/cli/DoctorCommand.h"

#include <algorithm>

#include "app/SystemCapability.h"
#include "catalogue/CatalogueWords.h"

namespace vantor {

std::vector<DoctorRow> catalogueRows(const StoredCatalogue& stored) {
    const std::string name = "catalogue";
    std::vector<DoctorRow> rows{{name, true, catalogueText(stored.status)}};
    if (!stored.status.playerFiles.empty()) rows.push_back({name, true, playerFilesText(stored.status)});
    for (const std::string& fault : stored.faults) rows.push_back({name, false, fault});
    return rows;
}

std::string capabilitiesAsText(const std::vector<Capability>& capabilities, const std::vector<DoctorRow>& more) {
    std::vector<DoctorRow> rows;
    rows.reserve(capabilities.size() + more.size());
    for (const auto& each : capabilities) rows.push_back({capabilityName(each.kind), each.present, each.advice});
    rows.insert(rows.end(), more.begin(), more.end());
    std::size_t widest = 0;
    for (const DoctorRow& row : rows) widest = std::max(widest, row.name.size());
    std::string text;
    for (const DoctorRow& row : rows) {
        text += row.name + std::string(widest - row.name.size(), ' ');
        text += row.present ? "  yes  " : "  no   ";
        text += row.sentence + '\n';
    }
    return text;
}

}  // namespace vantor
