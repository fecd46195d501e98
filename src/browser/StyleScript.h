#pragma once
// The script that adds our style sheet to a page. Pure; any thread.

#include <string>
#include <string_view>

namespace vantor {

[[nodiscard]] std::string styleScript(std::string_view styleSheet);

}  // namespace vantor
