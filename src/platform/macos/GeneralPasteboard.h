#pragma once
// The general pasteboard. Main thread.

#include "platform/Pasteboard.h"

namespace vantor {

class GeneralPasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::string text() const override;
    void setText(const std::string& text) override;
};

}  // namespace vantor
