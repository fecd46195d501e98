#pragma once
// A pasteboard in memory.

#include <string>

#include "platform/Pasteboard.h"

namespace vantor {

class FakePasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::string text() const override { return held; }
    void setText(const std::string& text) override { held = text; }

    std::string held;
};

}  // namespace vantor
