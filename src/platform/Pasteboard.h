#pragma once
// The general pasteboard's plain text, UTF-8. Main thread.

#include <string>

namespace vantor {

class Pasteboard {
public:
    virtual ~Pasteboard() = default;
    // Empty when it holds no text.
    [[nodiscard]] virtual std::string text() const = 0;
    virtual void setText(const std::string& text) = 0;
};

}  // namespace vantor
