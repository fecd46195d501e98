#pragma once
// Where the player left a window: kept as a text "x y w h", and brought back onto a screen when its monitor is gone.
// Pure.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Screens.h"

namespace vantor {

[[nodiscard]] std::string writeFrame(const Rect& frame);
// Nothing for a text of another form, or a size that is not positive.
[[nodiscard]] std::optional<Rect> readFrame(std::string_view text);

[[nodiscard]] Rect centred(const Rect& frame, const Rect& screen);
// The frame itself where enough of it is reachable on one of the screens; else moved into the nearest one, and no
// larger than that. The screens are not empty.
[[nodiscard]] Rect broughtOntoScreen(const Rect& frame, std::span<const Rect> screens);

}  // namespace vantor
