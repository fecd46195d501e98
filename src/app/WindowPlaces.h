#pragma once
// Where the player left a window, for each monitor that the game has stood on, and where it belongs now. Pure.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Screens.h"

namespace vantor {

// The screen that has most of the window; the first one where there is no window. The screens are not empty.
[[nodiscard]] const Screen& screenOf(const std::optional<Rect>& window, std::span<const Screen> screens);

// The stored text with this frame as the place that belongs to the screen. The frame need not lie on it: a player may
// keep a window on another monitor than the game's.
[[nodiscard]] std::string withPlace(std::string_view stored, const Rect& frame, const Screen& screen);

// Whether the text is just this frame, as Vantor wrote it when it kept one place for all monitors: it holds as long as
// their scale does.
[[nodiscard]] bool isPlainFrame(std::string_view stored, const Rect& frame);

// Where the window belongs while the game is on this one of the screens: where it was left then; else where it was
// left last, moved over from the other monitor; else in the middle, in the given size. A place of a monitor that had
// another size or scale stays in proportion. Enough of the window can always be reached.
[[nodiscard]] Rect placeOn(const Screen& screen, std::span<const Screen> screens, std::string_view stored, int width,
                           int height);

}  // namespace vantor
