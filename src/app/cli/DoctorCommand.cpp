#include "app/cli/DoctorCommand.h"

#include <algorithm>

namespace vantor {

std::string powersAsText(const std::vector<Power>& powers) {
    std::size_t widest = 0;
    for (const auto& each : powers) widest = std::max(widest, each.name.size());
    std::string text;
    for (const auto& each : powers) {
        text += each.name + std::string(widest - each.name.size(), ' ');
        text += each.present ? "  yes  " : "  no   ";
        text += each.advice + '\n';
    }
    return text;
}

}  // namespace vantor
