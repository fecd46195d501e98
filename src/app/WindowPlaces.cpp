#include "app/WindowPlaces.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <vector>

namespace vantor {

namespace {

constexpr int reachable = 48;                // points of width and height that a player can still take hold of
constexpr std::size_t rememberedPlaces = 8;  // monitors come and go
constexpr char separator = ';';

// Counted from the top left corner of the screen that it belongs to.
struct Place {
    Rect frame;
    int screenWidth = 0;
    int screenHeight = 0;
    std::string screen;
};

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

std::int64_t sharedArea(const Rect& one, const Rect& other) {
    return std::int64_t{overlap(one.x, one.width, other.x, other.width)} *
           overlap(one.y, one.height, other.y, other.height);
}

// The title bar is what one drags by, so the top edge must be on the screen.
bool isReachable(const Rect& frame, const Rect& screen) {
    return overlap(frame.x, frame.width, screen.x, screen.width) >= std::min(reachable, frame.width) &&
           overlap(frame.y, frame.height, screen.y, screen.height) >= std::min(reachable, frame.height) &&
           frame.y >= screen.y;
}

bool isReachable(const Rect& frame, std::span<const Screen> screens) {
    return std::ranges::any_of(screens, [&](const Screen& screen) { return isReachable(frame, screen.frame); });
}

Rect movedInto(const Rect& screen, const Rect& frame) {
    Rect moved = frame;
    moved.width = std::min(frame.width, screen.width);
    moved.height = std::min(frame.height, screen.height);
    moved.x = std::clamp(frame.x, screen.x, screen.x + screen.width - moved.width);
    moved.y = std::clamp(frame.y, screen.y, screen.y + screen.height - moved.height);
    return moved;
}

int inProportion(int value, int length, int formerLength) {
    return static_cast<int>(std::lround(static_cast<double>(value) * length / formerLength));
}

std::string nameOf(const Screen& screen) {
    std::string name = screen.name;
    std::ranges::replace(name, separator, ' ');
    return name;
}

std::string_view cutOff(std::string_view& text, char end) {
    const auto at = std::min(text.find(end), text.size());
    const auto first = text.substr(0, at);
    text.remove_prefix(std::min(at + 1, text.size()));
    return first;
}

// "x y w h", as it was written for the whole desktop, or "x y w h W H NAME" for a screen of that size.
std::optional<Place> readPlace(std::string_view text) {
    Place place;
    const std::array<int*, 6> numbers{&place.frame.x,      &place.frame.y,     &place.frame.width,
                                      &place.frame.height, &place.screenWidth, &place.screenHeight};
    std::size_t count = 0;
    for (; count < numbers.size() && !text.empty(); ++count) {
        const std::string_view word = cutOff(text, ' ');
        const auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), *numbers.at(count));
        if (error != std::errc{} || rest != word.data() + word.size()) return std::nullopt;
    }
    const bool ofDesktop = count == 4;
    if ((!ofDesktop && count != 6) || place.frame.width <= 0 || place.frame.height <= 0) return std::nullopt;
    if (!ofDesktop && (place.screenWidth <= 0 || place.screenHeight <= 0)) return std::nullopt;
    place.screen = text;
    return place;
}

bool isOfDesktop(const Place& place) { return place.screenWidth == 0; }

std::vector<Place> readPlaces(std::string_view stored) {
    std::vector<Place> places;
    while (!stored.empty())
        if (const auto place = readPlace(cutOff(stored, separator))) places.push_back(*place);
    return places;
}

std::string write(const Place& place) {
    std::string text;
    for (const int number :
         {place.frame.x, place.frame.y, place.frame.width, place.frame.height, place.screenWidth, place.screenHeight})
        text += std::to_string(number) + ' ';
    return text + place.screen;
}

// From the days of one place for all monitors: it belongs to the one that it lies on, or that is nearest.
Place withScreen(const Place& place, std::span<const Screen> screens) {
    const Screen& nearest = *std::ranges::min_element(
        screens, {}, [&](const Screen& screen) { return distance(place.frame, screen.frame); });
    Place known{place.frame, nearest.frame.width, nearest.frame.height, nameOf(nearest)};
    known.frame.x -= nearest.frame.x;
    known.frame.y -= nearest.frame.y;
    return known;
}

}  // namespace

const Screen& screenOf(const std::optional<Rect>& window, std::span<const Screen> screens) {
    if (!window) return screens.front();
    return *std::ranges::max_element(screens, {},
                                     [&](const Screen& screen) { return sharedArea(*window, screen.frame); });
}

std::string withPlace(std::string_view stored, const Rect& frame, const Screen& screen) {
    std::vector<Place> places{{{frame.x - screen.frame.x, frame.y - screen.frame.y, frame.width, frame.height},
                               screen.frame.width,
                               screen.frame.height,
                               nameOf(screen)}};
    for (const Place& place : readPlaces(stored))
        if (!isOfDesktop(place) && place.screen != places.front().screen && places.size() < rememberedPlaces)
            places.push_back(place);
    std::string text;
    for (const Place& place : places) text += (text.empty() ? "" : std::string(1, separator)) + write(place);
    return text;
}

bool isPlainFrame(std::string_view stored, const Rect& frame) {
    const auto places = readPlaces(stored);
    return places.size() == 1 && isOfDesktop(places.front()) && places.front().frame == frame;
}

Rect placeOn(const Screen& screen, std::span<const Screen> screens, std::string_view stored, int width, int height) {
    const Rect& room = screen.frame;
    const auto places = readPlaces(stored);
    if (places.empty())
        return movedInto(room, {room.x + (room.width - width) / 2, room.y + (room.height - height) / 2, width, height});
    const auto own = std::ranges::find(places, nameOf(screen), &Place::screen);
    Place place = own == places.end() ? places.front() : *own;
    if (isOfDesktop(place)) place = withScreen(place, screens);
    const bool isOwn = place.screen == nameOf(screen);
    const bool sameSize = place.screenWidth == room.width && place.screenHeight == room.height;
    Rect frame = place.frame;
    frame.x = room.x + inProportion(frame.x, room.width, place.screenWidth);
    frame.y = room.y + inProportion(frame.y, room.height, place.screenHeight);
    return isOwn && sameSize && isReachable(frame, screens) ? frame : movedInto(room, frame);
}

}  // namespace vantor
