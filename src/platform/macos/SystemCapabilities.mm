#include "platform/macos/SystemCapabilities.h"

#include <string>

namespace vantor {

namespace {

std::string allowIn(const std::string& settings) {
    return "allow Vantor in System Settings, Privacy & Security, " + settings;
}

}  // namespace

std::vector<Capability> examineCapabilities(const PrivacyPermissions& permissions) {
    const bool hears = permissions.granted(PrivacyPermissions::Kind::hearKeys);
    const bool presses = permissions.granted(PrivacyPermissions::Kind::pressKeys);
    // The system tells keys of other applications only to whom it also trusts with pressing them, and often asks for
    // no more.
    const std::string missing =
        presses ? "none was heard yet from the game; if one does nothing there, " + allowIn("Input Monitoring")
                : "hotkeys work in Vantor's own windows only: " + allowIn("Accessibility");
    return {
        {CapabilityKind::rawKeys, hears && presses, hears && presses ? "the system lets Vantor hear them" : missing},
        {CapabilityKind::posting, presses,
         presses ? "the system lets Vantor press keys"
                 : "nothing can be typed into the game: " + allowIn("Accessibility")},
        {CapabilityKind::keyring, true, "the keychain"},
        {CapabilityKind::webEngine, true, "the system's own"},
    };
}

}  // namespace vantor
