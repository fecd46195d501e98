#pragma once
// The screens as the toolkit knows them. Main thread.

#include "platform/Screens.h"

namespace vantor {

class QtScreens final : public Screens {
public:
    [[nodiscard]] std::vector<Rect> frames() const override;
};

}  // namespace vantor
