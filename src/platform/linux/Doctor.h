#pragma once
// What Vantor needs from the system, whether it is there, and what to do when it is not. Works without a display and
// opens connections of its own. Main thread.

#include <filesystem>
#include <string>
#include <vector>

namespace vantor {

struct Power {
    std::string name;
    bool present = false;
    std::string advice;  // what is found, or what to do

    bool operator==(const Power&) const = default;
};

// In the order in which they are shown. The module is the browser engine's file.
[[nodiscard]] std::vector<Power> examinePowers(const std::filesystem::path& webModule);
// One line for each, with a line feed at its end.
[[nodiscard]] std::string powersAsText(const std::vector<Power>& powers);

}  // namespace vantor
