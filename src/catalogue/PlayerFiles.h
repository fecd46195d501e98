#pragma once
// The player's own catalogue files: every *.json of one folder, in the order of their names. Any thread.

#include <string>
#include <vector>

#include "data/Catalogue.h"

namespace vantor {

struct PlayerFiles {
    std::vector<EventsSection> sections;  // of all files that hold
    std::vector<std::string> files;       // their names
    std::vector<std::string> faults;      // "FILE: path: what is wrong", one line each; such a file counts for nothing

    bool operator==(const PlayerFiles&) const = default;
};

// A folder that is not there holds no files. A section that an earlier file has is a fault of the later one.
[[nodiscard]] PlayerFiles readPlayerFiles(const std::string& folder);

}  // namespace vantor
