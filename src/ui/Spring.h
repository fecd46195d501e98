#pragma once
// A damped spring as the course of a motion. Pure; any thread.

namespace vantor {

struct Spring {
    double response = 0.55;          // seconds of one swing without damping
    double dampingFraction = 0.825;  // 1: no overshoot

    // Where the motion from 0 to 1 stands after so many seconds; may pass 1.
    [[nodiscard]] double at(double seconds) const;
    // Seconds after which it stays within a hundredth of its end.
    [[nodiscard]] double settled() const;
};

}  // namespace vantor
