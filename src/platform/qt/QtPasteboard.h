#pragma once
// The desktop's clipboard. Main thread.

#include "platform/Pasteboard.h"

namespace vantor {

class QtPasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::string text() const override;
    void setText(const std::string& text) override;
};

}  // namespace vantor
