#pragma once
// Days of the UTC calendar as the catalogue writes them, "2026-10-01". Pure; any thread.

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace vantor {

// Days since 1970-01-01; nothing when the text is no day.
[[nodiscard]] std::optional<std::int64_t> dayNumber(const std::string& day);
[[nodiscard]] std::int64_t dayNumber(Clock::Seconds moment);

// "3 September 2026", or without the year; a text that is no day stays as it is.
[[nodiscard]] std::string dayText(const std::string& day, bool withYear = true);

}  // namespace vantor
