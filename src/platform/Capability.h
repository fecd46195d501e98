#pragma once
// One thing that Vantor needs from the system. A value.

#include <string>

namespace vantor {

struct Capability {
    std::string name;
    bool present = false;
    std::string advice;  // what is found, or what to do

    bool operator==(const Capability&) const = default;
};

}  // namespace vantor
