#pragma once
// Font files of the player's, made known to this process alone. Any thread.

#include <cstddef>
#include <string>
#include <vector>

namespace vantor {

// How many can be drawn with; a file that is no font is passed over, one that is known already counts.
std::size_t registerFontFiles(const std::vector<std::string>& paths);
// The font files of a folder, sorted; none when there is no such folder.
[[nodiscard]] std::vector<std::string> fontFilesIn(const std::string& folder);

}  // namespace vantor
