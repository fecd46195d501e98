#pragma once
// Which hosts updates of the catalogue may come from. Pure; any thread.

#include <string>

namespace vantor {

// An https address without a slash at its end; plain http only to this machine itself, which a stand-in listens on.
[[nodiscard]] bool isUpdateHost(const std::string& host);

}  // namespace vantor
