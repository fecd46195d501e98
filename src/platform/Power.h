#pragma once
// One thing that Vantor needs from the system. A value.

#include <string>

namespace vantor {

struct Power {
    std::string name;
    bool present = false;
    std::string advice;  // what is found, or what to do

    bool operator==(const Power&) const = default;
};

}  // namespace vantor
