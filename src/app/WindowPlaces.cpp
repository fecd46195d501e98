#include "app/WindowPlaces.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

namespace vantor {

namespace {

constexpr int reachable = 48;  // points of width and height that a player can still take hold of

int overlap(int from, int length, int otherFrom, int otherLength) {
    const auto end = std::min(std::int64_t{from} + length, std::int64_t{otherFrom} + otherLength);
    return static_cast<int>(std::clamp<std::int64_t>(end - std::max(from, otherFrom), 0, length));
}

std::int64_t gap(int from, int length, int otherFrom, int otherLength) {
    const std::int64_t before = std::int64_t{otherFrom} - (std::int64_t{from} + length);
    const std::int64_t after = std::int64_t{from} - (std::int64_t{otherFrom} + otherLength);
    return std::max<std::int64_t>({before, after, 0});
}

std::int64_t distance(const Rect& frame, const Rect& screen) {
    return gap(frame.x, frame.width, screen.x, screen.width) + gap(frame.y, frame.height, screen.y, screen.height);
}

}  // namespace

std::string writeFrame(const Rect& frame) {
    return std::to_string(frame.x) + ' ' + std::to_string(frame.y) + ' ' + std::to_string(frame.width) + ' ' +
           std::to_string(frame.height);
}

std::optional<Rect> readFrame(std::string_view text) {
    Rect frame;
    const char* place = text.data();
    const char* const end = place + text.size();
    bool first = true;
    for (int* number : {&frame.x, &frame.y, &frame.width, &frame.height}) {
        if (!std::exchange(first, false)) {
            if (place == end || *place != ' ') return std::nullopt;
            ++place;
        }
        const auto [rest, error] = std::from_chars(place, end, *number);
        if (error != std::errc{}) return std::nullopt;
        place = rest;
    }
    if (place != end || frame.width <= 0 || frame.height <= 0) return std::nullopt;
    return frame;
}

Rect centred(const Rect& frame, const Rect& screen) {
    return {screen.x + (screen.width - frame.width) / 2, screen.y + (screen.height - frame.height) / 2, frame.width,
            frame.height};
}

Rect broughtOntoScreen(const Rect& frame, std::span<const Rect> screens) {
    for (const Rect& screen : screens) {
        const int wide = overlap(frame.x, frame.width, screen.x, screen.width);
        const int high = overlap(frame.y, frame.height, screen.y, screen.height);
        // The title bar is what one drags by, so the top edge must be on the screen.
        if (wide >= std::min(reachable, frame.width) && high >= std::min(reachable, frame.height) &&
            frame.y >= screen.y)
            return frame;
    }
    const Rect& nearest = *std::min_element(screens.begin(), screens.end(), [&](const Rect& left, const Rect& right) {
        return distance(frame, left) < distance(frame, right);
    });
    Rect moved = frame;
    moved.width = std::min(frame.width, nearest.width);
    moved.height = std::min(frame.height, nearest.height);
    moved.x = std::clamp(frame.x, nearest.x, nearest.x + nearest.width - moved.width);
    moved.y = std::clamp(frame.y, nearest.y, nearest.y + nearest.height - moved.height);
    return moved;
}

}  // namespace vantor
