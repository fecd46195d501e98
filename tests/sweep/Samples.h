#pragma once
// What is typed for a key map, and what of it must arrive. Pure, any thread.

#include <string>

#include "input/KeyMap.h"

namespace vantor::sweep {

struct Sample {
    std::string typed;
    std::string expected;
};

// Everything that the map has a key for, except control characters and the keypad's texts, each once. A tab stands
// between two that would otherwise be one character to the reader.
[[nodiscard]] Sample everythingOf(const KeyMap& map);
// Some of the map's characters, with others between them that the map lacks.
[[nodiscard]] Sample withLackingOf(const KeyMap& map);

}  // namespace vantor::sweep
