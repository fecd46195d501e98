#include "app/GameFocus.h"

#include "app/EnabledApplications.h"

namespace vantor {

bool GameFocus::isCurrentApplicationEnabled() const { return isApplicationEnabled(defaults_, curApp_.value_or("")); }

void GameFocus::toggleCurrentApplication() { toggleApplication(defaults_, curApp_.value_or("")); }

ToggleEntry GameFocus::toggleEntry() const {
    const std::string identifier = curApp_.value_or("");
    const std::string name = workspace_.displayName(identifier).value_or(identifier);
    if (!isCurrentApplicationEnabled()) return {"Enable on " + name};
    // A click into the overlay has brought Vantor to the front: nobody means to shut out Vantor itself.
    return {"Disable on " + name, identifier != ownIdentifier};
}

bool GameFocus::mayGiveFocusToVantor() const {
    return curApp_ != ownIdentifier && isCurrentApplicationEnabled() && isApplicationEnabled(defaults_, ownIdentifier);
}

}  // namespace vantor
