#include "ui/Spring.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vantor {

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

}  // namespace vantor
