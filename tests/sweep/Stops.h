#pragma once
// A text that is stopped: at every one of its strokes, and at random moments, half of them by a focus that goes to
// another window. What was typed is a beginning of it, and nothing is down afterwards. Main thread.

#include <string>

#include "desktop/Player.h"
#include "sweep/LayoutList.h"

namespace vantor::sweep {

class Stops {
public:
    // In this layout, the first 200 characters that it has, again and again.
    void stopEverywhere(const LayoutName& layout);
    // As the program wires it, with a typing thread and a focus that is asked for before each stroke.
    void stopAtRandom(unsigned times);
    // "N passed, M failed". True when all were exact.
    [[nodiscard]] bool report() const;

private:
    [[nodiscard]] std::string everyStop();
    [[nodiscard]] std::string randomStops(unsigned times);
    // Why what arrived is not what was posted, or the keyboard is another; empty where all is well.
    [[nodiscard]] std::string faultAfter(const std::string& text, std::size_t posted, const std::string& before);
    void count(const std::string& what, const std::string& fault);

    Player player_;
    int passed_ = 0;
    int failed_ = 0;
};

}  // namespace vantor::sweep
