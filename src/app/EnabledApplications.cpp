#include "app/EnabledApplications.h"

#include <algorithm>
#include <vector>

#include "data/SettingKeys.h"
#include "platform/Workspace.h"

namespace vantor {

namespace {

using Identifiers = std::vector<std::string>;

// A list that cannot be written still counts for this run; the store has said why.
void store(Defaults& defaults, const Identifiers& identifiers) {
    if (defaults.setValue(settings::enabledApplications, identifiers) != Defaults::Verdict::stored) return;
}

}  // namespace

bool isApplicationEnabled(Defaults& defaults, const std::string& identifier) {
    auto enabled = defaults.get<Identifiers>(settings::enabledApplications);
    if (!enabled || enabled->empty()) {
        enabled = Identifiers{"net.arena.Guild-Wars-2", ownIdentifier, "com.nvidia.gfnpc.mall"};
        store(defaults, *enabled);
    }
    return std::find(enabled->begin(), enabled->end(), identifier) != enabled->end();
}

void toggleApplication(Defaults& defaults, const std::string& identifier) {
    Identifiers list = defaults.get<Identifiers>(settings::enabledApplications).value_or(Identifiers{});
    if (isApplicationEnabled(defaults, identifier)) {
        if (const auto found = std::find(list.begin(), list.end(), identifier); found != list.end()) list.erase(found);
    } else if (!identifier.empty()) {
        list.push_back(identifier);
    }
    store(defaults, list);
}

}  // namespace vantor
