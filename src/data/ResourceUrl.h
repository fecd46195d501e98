#pragma once
// Whether a text is an absolute address that a request can be made of. Any thread.

#include <string>

namespace vantor {

[[nodiscard]] bool isValidUrl(const std::string& text);

}  // namespace vantor
