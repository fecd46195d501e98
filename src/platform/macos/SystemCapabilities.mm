#include "platform/macos/SystemCapabilities.h"

#include <string>

namespace vantor {

namespace {

std::string allowIn(const std::string& settings) {
    return "allow Vantor in System Settings, Privacy & Security, " + settings;
}

}  // namespace

std::vector<Capability> examineCapabilities(const Permissions& permissions) {
    const bool hears = permissions.granted(Permissions::Kind::hearKeys);
    const bool presses = permissions.granted(Permissions::Kind::pressKeys);
    // The system tells keys of other applications only to whom it also trusts with pressing them.
    const char* const missing = hears     ? "Accessibility"
                                : presses ? "Input Monitoring"
                                          : "Input Monitoring and Accessibility";
    return {
        {CapabilityKind::rawKeys, hears && presses,
         hears && presses ? "the system lets Vantor hear them"
                          : std::string("hotkeys ") + (presses ? "may " : "") +
                                "work in Vantor's own windows only: " + allowIn(missing)},
        {CapabilityKind::posting, presses,
         presses ? "the system lets Vantor press keys"
                 : "nothing can be typed into the game: " + allowIn("Accessibility")},
        {CapabilityKind::keyring, true, "the keychain"},
        {CapabilityKind::webEngine, true, "the system's own"},
    };
}

}  // namespace vantor
