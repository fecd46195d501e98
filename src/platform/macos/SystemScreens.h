#pragma once
// The screens as the system knows them. Main thread.

#include "platform/Screens.h"

namespace vantor {

class SystemScreens final : public Screens {
public:
    // First the one with the window that has the keyboard, which is the game's.
    [[nodiscard]] std::vector<Rect> frames() const override;
};

}  // namespace vantor
