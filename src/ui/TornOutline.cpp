#include "ui/TornOutline.h"

#include <QtCore/QPointF>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vantor {

namespace {

constexpr double cornerLength = 28;

// Runs one side from corner to corner. `along` is the side's direction, `inward` the way into the panel.
void tearSide(QPainterPath& path, QPointF from, QPointF along, QPointF inward, double length, double depth,
              unsigned seed) {
    const double corner = std::min(cornerLength, length / 2);
    double place = 0;
    for (int index = 0; place < length; ++index) {
        const bool first = place < corner;
        const bool last = length - place <= corner;
        // A corner's own tear is counted from the corner, so it does not change when the side grows.
        const int key = last && !first ? 1000 + static_cast<int>((length - place) / 5) : index;
        const double rough = roughness(seed, key);
        const double wave = 0.5 + 0.5 * std::sin(place / 23.0 + seed);
        path.lineTo(from + along * place + inward * (depth * (0.65 * rough + 0.35 * wave)));
        place += 4 + 6 * roughness(seed + 77, key);
    }
}

}  // namespace

double roughness(unsigned seed, int place) {
    auto mixed = static_cast<std::uint32_t>(place) * 0x9E3779B1U + seed * 0x85EBCA6BU;
    mixed ^= mixed >> 15;
    mixed *= 0x2C1B3C6DU;
    mixed ^= mixed >> 12;
    mixed *= 0x297A2D39U;
    mixed ^= mixed >> 15;
    return static_cast<double>(mixed & 0xFFFFU) / 65535.0;
}

QPainterPath tornOutline(const QRectF& frame, double depth, unsigned seed) {
    QPainterPath path;
    path.moveTo(frame.topLeft() + QPointF(depth * 0.3, depth * 0.3));
    tearSide(path, frame.topLeft(), {1, 0}, {0, 1}, frame.width(), depth, seed);
    tearSide(path, frame.topRight(), {0, 1}, {-1, 0}, frame.height(), depth, seed + 1);
    tearSide(path, frame.bottomRight(), {-1, 0}, {0, -1}, frame.width(), depth, seed + 2);
    tearSide(path, frame.bottomLeft(), {0, -1}, {1, 0}, frame.height(), depth, seed + 3);
    path.closeSubpath();
    return path;
}

}  // namespace vantor
