#include "timers/TimeText.h"

#include <cstdint>
#include <cstdio>

namespace vantor {

namespace {

std::optional<std::int64_t> truncated(double number) {
    // 2^63 is the first double that is too large; a comparison with a non-number is false
    constexpr double limit = 9223372036854775808.0;
    if (!(number >= -limit && number < limit)) return std::nullopt;
    return static_cast<std::int64_t>(number);
}

}  // namespace

std::optional<std::string> timeText(double minutes) {
    const auto hours = truncated(minutes / 60);
    const auto whole = truncated(minutes);
    if (!hours || !whole) return std::nullopt;
    char text[16];
    const int length =
        std::snprintf(text, sizeof text, "%02d:%02d", static_cast<int>(*hours % 24), static_cast<int>(*whole % 60));
    return std::string(text, static_cast<std::size_t>(length));
}

std::string clockText(std::int64_t minute) {
    const std::int64_t ofDay = (minute % minutesPerDay + minutesPerDay) % minutesPerDay;
    return timeText(static_cast<double>(ofDay)).value_or(std::string());
}

std::string remainingText(std::int64_t minutes) {
    if (minutes <= 0) return "now";
    const std::int64_t hours = minutes / 60;
    const std::string rest = std::to_string(minutes % 60);
    if (hours == 0) return rest + " min";
    if (minutes % 60 == 0) return std::to_string(hours) + " h";
    return std::to_string(hours) + " h " + (rest.size() < 2 ? "0" : "") + rest + " min";
}

}  // namespace vantor
