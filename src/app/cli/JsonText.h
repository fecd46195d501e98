#pragma once
// Single JSON values as text, for output that is written as it is computed. Pure; any thread.

#include <string>
#include <string_view>

namespace vantor {

// A string with its quotes; the text is UTF-8.
[[nodiscard]] std::string jsonText(std::string_view text);
// The shortest text that reads back as this finite number.
[[nodiscard]] std::string jsonText(double number);

}  // namespace vantor
