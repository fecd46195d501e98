#pragma once
// A moment as the command line gives it. A plain value; any thread.

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Clock.h"

namespace vantor {

struct Moment {
    std::int64_t calendarSeconds = 0;           // the written date and time, counted as if it were UTC
    std::optional<std::int32_t> offsetSeconds;  // nothing: the local zone's

    bool operator==(const Moment&) const = default;
};

// ISO 8601: 2026-03-29, 2026-03-29T01:30, 2026-03-29T01:30:15 (a fraction is cut off), each with a time optionally
// followed by Z, +hh, +hhmm or +hh:mm; a space may stand for the T. Nothing for any other text.
[[nodiscard]] std::optional<Moment> parseMoment(std::string_view text);

// A local time that occurs twice is the first of the two; one that a clock change skips is counted with the offset
// before it.
[[nodiscard]] Clock::Seconds resolve(const Moment& moment, const Clock& zone);

}  // namespace vantor
