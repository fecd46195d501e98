#pragma once
// A stored hotkey in the words that stand on a PC's keyboard, for players to whom the signs say nothing. Pure, any
// thread.

#include <string>
#include <string_view>

namespace vantor {

// "Ctrl + Shift + T". Empty for a hotkey that is not set.
[[nodiscard]] std::string pcKeyWords(std::string_view stored);

}  // namespace vantor
