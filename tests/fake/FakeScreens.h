#pragma once
// Screens as a test arranges them.

#include <utility>
#include <vector>

#include "base/Notice.h"
#include "platform/Screens.h"

namespace vantor {

class FakeScreens final : public Screens {
public:
    [[nodiscard]] std::vector<Screen> all() const override { return arranged; }
    [[nodiscard]] std::optional<Rect> frontmostWindow() const override { return game; }
    Subscription observe(std::function<void()> handler) override { return changed.observe(std::move(handler)); }

    std::vector<Screen> arranged{{{0, 0, 1360, 820}, "ONE"}};
    std::optional<Rect> game;
    Notice changed;
};

}  // namespace vantor
