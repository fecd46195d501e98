#pragma once
// Screens as a test arranges them.

#include <utility>
#include <vector>

#include "platform/Screens.h"

namespace vantor {

class FakeScreens final : public Screens {
public:
    explicit FakeScreens(std::vector<Rect> frames = {{0, 0, 1360, 820}}) : arranged(std::move(frames)) {}
    [[nodiscard]] std::vector<Rect> frames() const override { return arranged; }

    std::vector<Rect> arranged;
};

}  // namespace vantor
