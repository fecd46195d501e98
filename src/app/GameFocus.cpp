#include "app/GameFocus.h"

#include "app/EnabledApplications.h"

namespace vantor {

bool GameFocus::isCurrentApplicationEnabled() const { return isApplicationEnabled(defaults_, curApp_.value_or("")); }

void GameFocus::toggleCurrentApplication() { toggleApplication(defaults_, curApp_.value_or("")); }

std::string GameFocus::menuTitle() const {
    const std::string identifier = curApp_.value_or("");
    const std::string name = workspace_.displayName(identifier).value_or(identifier);
    return (isCurrentApplicationEnabled() ? "Disable on " : "Enable on ") + name;
}

}  // namespace vantor
