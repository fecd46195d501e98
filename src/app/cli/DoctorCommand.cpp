#include "app/cli/DoctorCommand.h"

#include <algorithm>

#include "app/SystemCapability.h"

namespace vantor {

std::string capabilitiesAsText(const std::vector<Capability>& capabilities) {
    std::size_t widest = 0;
    for (const auto& each : capabilities) widest = std::max(widest, capabilityName(each.kind).size());
    std::string text;
    for (const auto& each : capabilities) {
        const std::string name = capabilityName(each.kind);
        text += name + std::string(widest - name.size(), ' ');
        text += each.present ? "  yes  " : "  no   ";
        text += each.advice + '\n';
    }
    return text;
}

}  // namespace vantor
