#pragma once
// Motions of controls: short, and none where the desktop's user wants none. No timer runs while nothing moves. Main
// thread.

#include <QtCore/QVariantAnimation>
#include <functional>

namespace vantor {

// A damped spring as the course of a motion.
struct Spring {
    double response = 0.55;          // seconds of one swing without damping
    double dampingFraction = 0.825;  // 1: no overshoot

    // Where the motion from 0 to 1 stands after so many seconds; may pass 1.
    [[nodiscard]] double at(double seconds) const;
    // Seconds after which it stays within a hundredth of its end.
    [[nodiscard]] double settled() const;
};

// The wish for reduced motion: VANTOR_REDUCED_MOTION=1 (or 0), else what was told last, else nothing is reduced. Told
// by whoever asks the desktop; a motion that runs ends as it began.
void setReducedMotion(bool reduced);
[[nodiscard]] bool reducedMotion();

// One number that moves to where it is told along a spring. It belongs to its owner, whom it tells each step.
class Motion final : public QObject {
public:
    Motion(QObject* owner, Spring spring, std::function<void(double)> step);

    [[nodiscard]] double value() const { return value_; }
    [[nodiscard]] bool moving() const { return animation_.state() == QAbstractAnimation::Running; }
    void moveTo(double target);
    void jumpTo(double target);

private:
    void set(double value);

    Spring spring_;
    std::function<void(double)> step_;
    QVariantAnimation animation_;
    double value_ = 0;
    double from_ = 0;
    double target_ = 0;
};

namespace springs {
// Knobs, underlines, hovers.
inline constexpr Spring quick{0.22, 1.0};
// What opens and closes.
inline constexpr Spring standard{0.55, 0.825};
}  // namespace springs

}  // namespace vantor
