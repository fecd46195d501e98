#pragma once
// A pasteboard in memory that counts how often it was read.

#include <string>

#include "platform/Pasteboard.h"

namespace vantor {

class FakePasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::string text() const override {
        ++reads;
        return held;
    }
    void setText(const std::string& text) override { held = text; }

    std::string held;
    mutable int reads = 0;
};

}  // namespace vantor
