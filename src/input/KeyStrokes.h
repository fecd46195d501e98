#pragma once
// What is posted for a text or for a readable key combination, as a plain list. Pure, any thread.

#include <cstddef>
#include <string>
#include <vector>

#include "input/KeyMap.h"
#include "platform/Keys.h"

namespace vantor {

// Of each user-perceived character in turn: by the key that types it, else by those that type its code points, as a
// letter and its marks. Empty for one that neither types.
[[nodiscard]] std::vector<std::vector<PostedKey>> strokesOfCharacters(const KeyMap& map, const std::string& text);
// All of them together.
[[nodiscard]] std::vector<PostedKey> strokesOfText(const KeyMap& map, const std::string& text);

// The parts between " + "; one that names no key is left out. The last part goes down first, the first part up first.
[[nodiscard]] std::vector<PostedKey> strokesOfReadableKeys(const KeyMap& map, const std::string& combination);

// How many of them are left out.
[[nodiscard]] std::size_t unknownParts(const KeyMap& map, const std::string& combination);

}  // namespace vantor
