#include "ui/Motion.h"

#include <QtCore/qglobal.h>
#include <QtCore/QVariant>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace vantor {

namespace {

constexpr const char* wish = "vantorReducedMotion";

}  // namespace

double Spring::at(double seconds) const {
    if (seconds <= 0) return 0;
    const double natural = 2 * std::numbers::pi / response;
    const double damping = std::clamp(dampingFraction, 0.0, 1.0);
    const double decay = std::exp(-damping * natural * seconds);
    if (damping >= 1) return 1 - decay * (1 + natural * seconds);
    const double swing = natural * std::sqrt(1 - damping * damping);
    return 1 - decay * (std::cos(swing * seconds) + damping * natural / swing * std::sin(swing * seconds));
}

double Spring::settled() const {
    const double natural = 2 * std::numbers::pi / response;
    const double damping = std::clamp(dampingFraction, 0.05, 1.0);
    // The envelope of the swing; without swing the last hundredth takes a little longer.
    return damping >= 1 ? 6.64 / natural : -std::log(0.01 * std::sqrt(1 - damping * damping)) / (damping * natural);
}

void setReducedMotion(bool reduced) { qApp->setProperty(wish, reduced); }

bool reducedMotion() {
    if (qEnvironmentVariableIsSet("VANTOR_REDUCED_MOTION"))
        return qEnvironmentVariableIntValue("VANTOR_REDUCED_MOTION") != 0;
    return qApp && qApp->property(wish).toBool();
}

Motion::Motion(QObject* owner, Spring spring, std::function<void(double)> step)
    : QObject(owner), spring_(spring), step_(std::move(step)) {
    const double seconds = spring_.settled();
    animation_.setStartValue(0.0);
    animation_.setEndValue(seconds);
    animation_.setDuration(static_cast<int>(seconds * 1000));
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& at) {
        if (animation_.state() == QAbstractAnimation::Running)
            set(from_ + (target_ - from_) * spring_.at(at.toDouble()));
    });
    QObject::connect(&animation_, &QVariantAnimation::finished, this, [this] { set(target_); });
}

void Motion::moveTo(double target) {
    if (target == target_ && (moving() || value_ == target)) return;
    if (reducedMotion()) return jumpTo(target);
    animation_.stop();
    from_ = value_;
    target_ = target;
    animation_.start();
}

void Motion::jumpTo(double target) {
    animation_.stop();
    target_ = target;
    set(target);
}

void Motion::set(double value) {
    if (std::exchange(value_, value) != value) step_(value);
}

}  // namespace vantor
