#pragma once
// Where a window may stand. Device-independent points, origin top left, y down. Main thread.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Subscription.h"

namespace vantor {

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Rect&) const = default;
};

// One monitor.
struct Screen {
    Rect frame;
    std::string name;  // the same after a restart, as far as the system knows its monitors apart; else empty

    bool operator==(const Screen&) const = default;
};

class Screens {
public:
    virtual ~Screens() = default;
    // The main screen first; never empty.
    [[nodiscard]] virtual std::vector<Screen> all() const = 0;
    // Where the other application's window stands that was in front last; nothing where the system does not tell.
    [[nodiscard]] virtual std::optional<Rect> frontmostWindow() const = 0;
    // Called later, when either has changed.
    virtual Subscription observe(std::function<void()> handler) = 0;
};

}  // namespace vantor
