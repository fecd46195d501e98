#pragma once
// What Vantor needs from the system, whether it is there, and what to do when it is not. Works without a display and
// opens connections of its own. Main thread.

#include <filesystem>
#include <string>
#include <vector>

#include "platform/Capability.h"

namespace vantor {

// Files that belong to Vantor and stand beside its program.
struct OwnFiles {
    std::filesystem::path webModule;
    std::filesystem::path guardian;
    // Why the module that is there cannot be loaded; empty where it can, or where nobody has tried.
    std::string webModuleTrouble = {};
    // Whether keyring and portal, if they are there, are asked a question each, for two seconds at most.
    bool asksServices = false;
    std::string keyring = "org.freedesktop.secrets";
};

// Whether the X server, if there is one, is a guest in a Wayland session.
[[nodiscard]] bool isWaylandSession();
// Whether there is a session bus to connect to: without an address the library would start one of its own.
[[nodiscard]] bool hasSessionBus();
// In the order in which they are shown.
[[nodiscard]] std::vector<Capability> examineCapabilities(const OwnFiles& files);
// The same for a program whose connection for keys is lost, which it alone can know.
[[nodiscard]] std::vector<Capability> withoutKeys(std::vector<Capability> capabilities);

}  // namespace vantor
