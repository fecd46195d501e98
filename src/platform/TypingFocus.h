#pragma once
// Which window the keyboard goes to, for whoever types into it: asked before each key. The typing thread.

#include <chrono>

namespace vantor {

class TypingFocus {
public:
    virtual ~TypingFocus() = default;
    // Waits until a window of another application than Vantor has the keyboard, and nobody has taken it away, and
    // remembers it. False when the time ran out.
    [[nodiscard]] virtual bool awaitOther(std::chrono::milliseconds atMost) = 0;
    // Whether what is posted now still goes to that window.
    [[nodiscard]] virtual bool isKept() = 0;
};

}  // namespace vantor
