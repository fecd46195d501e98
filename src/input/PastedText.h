#pragma once
// What is typed of a text that comes from the clipboard. Pure, any thread.

#include <string>

namespace vantor {

// "\r\n" is one line feed. Control characters but tab, line feed and carriage return are left out: typed, they would
// press the game's shortcuts.
[[nodiscard]] std::string pastedText(const std::string& clipboard);

}  // namespace vantor
