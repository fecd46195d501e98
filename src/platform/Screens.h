#pragma once
// Where a window may stand. Device-independent points, origin top left, y down. Main thread.

#include <vector>

namespace vantor {

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Rect&) const = default;
};

class Screens {
public:
    virtual ~Screens() = default;
    // The main screen first; never empty.
    [[nodiscard]] virtual std::vector<Rect> frames() const = 0;
};

}  // namespace vantor
