#pragma once
// One thing that Vantor needs from the system. A value.

#include <string>

namespace vantor {

enum class CapabilityKind {
    display,
    rawKeys,
    posting,
    layout,
    frontmostApplication,
    tray,
    keyring,
    fonts,
    guardian,
    webEngine,
    webSandbox,
};

struct Capability {
    CapabilityKind kind;
    bool present = false;
    std::string advice;  // what is found, or what to do

    bool operator==(const Capability&) const = default;
};

}  // namespace vantor
