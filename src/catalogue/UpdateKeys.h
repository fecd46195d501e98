#pragma once
// The keys whose updates are believed. Pure; any thread.

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/MinisignSignature.h"

namespace vantor {

// The public half of demo/catalogue/test.key, which everybody has.
inline constexpr std::string_view testKey = "RWTjqrqOZnB4PvjeiBQ/5GpsoPPGLAkxnPHH4mIQ/pKc3rIAMy/Ca0e2";

// The build's keys, now and next; empty texts are none. The test key is believed by builds for tests alone, also where
// a build names it as its own.
[[nodiscard]] std::vector<PublicKey> believedKeys(const std::vector<std::string>& ofBuild, bool forTests);

}  // namespace vantor
