#pragma once
// Whether an X server is the one inside a Wayland session, and which version of it. One thread.

#include <optional>
#include <string>

#include "platform/linux/XConnection.h"

namespace vantor {

// Nothing for any other server.
[[nodiscard]] std::optional<std::string> xwaylandVersion(const XConnection& connection);

// As the server gives it in the setup: 12401006 is 24.1.6.
[[nodiscard]] std::string serverVersionText(std::uint32_t release);

}  // namespace vantor
