#include "app/cli/DoctorCommand.h"

#include <algorithm>

namespace vantor {

std::string capabilitiesAsText(const std::vector<Capability>& capabilities) {
    std::size_t widest = 0;
    for (const auto& each : capabilities) widest = std::max(widest, each.name.size());
    std::string text;
    for (const auto& each : capabilities) {
        text += each.name + std::string(widest - each.name.size(), ' ');
        text += each.present ? "  yes  " : "  no   ";
        text += each.advice + '\n';
    }
    return text;
}

}  // namespace vantor
