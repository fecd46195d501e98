#pragma once
// Ends the program when game data cannot be computed with: going on would show wrong times. Any thread.

#include <string>

namespace vantor {

inline constexpr int dataFaultStatus = 70;

// For messages: line breaks and other control characters, which a name in the catalogue may hold, become spaces.
[[nodiscard]] std::string oneLine(std::string text);

// Writes "vantor: " and the text as one line to standard error and ends the program at once with status 70.
[[noreturn]] void stopForDataFault(const std::string& text);

}  // namespace vantor
