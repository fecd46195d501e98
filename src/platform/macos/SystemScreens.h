#pragma once
// The screens as the system knows them. Main thread.

#include "platform/Screens.h"

namespace vantor {

class SystemScreens final : public Screens {
public:
    // First the one with the window that has the keyboard, which is the game's. They bear no names here, so a window
    // has one place, and takes it on each of them.
    [[nodiscard]] std::vector<Screen> all() const override;
    // The first screen says it.
    [[nodiscard]] std::optional<Rect> frontmostWindow() const override { return std::nullopt; }
    // The next opening finds out.
    Subscription observe(std::function<void()>) override { return {}; }
};

}  // namespace vantor
