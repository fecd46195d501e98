#pragma once
// The colours of the look. Any thread.

#include <QtGui/QColor>
#include <algorithm>

namespace vantor::palette {

inline const QColor gold{0xF2, 0xD7, 0x8C};         // titles, times, values
inline const QColor warmWhite{0xEC, 0xE6, 0xD6};    // text
inline const QColor sand{0xB0, 0xA8, 0x96};         // second text
inline const QColor dim{0xA8, 0xA2, 0x92};          // hints, off
inline const QColor line{0xC9, 0xB2, 0x7A, 56};     // hairlines
inline const QColor red{0xB5, 0x34, 0x2A};          // chosen, gathering
inline const QColor amber{0xE0, 0xA5, 0x6A};        // "get there by"
inline const QColor brightAmber{0xFF, 0xB4, 0x54};  // watched, soon
inline const QColor blue{0x7F, 0xB2, 0xE6};         // lucky drops
inline const QColor green{0x8F, 0xBF, 0x6A};        // success
inline const QColor error{0xF5, 0x84, 0x72};        // what failed
inline const QColor inkTop{0x23, 0x1D, 0x18};
inline const QColor inkBottom{0x15, 0x11, 0x0E};
inline const QColor sheet{0x1C, 0x17, 0x13};     // "content.bg"; a fade of another tone would show as a box
inline const QColor fieldInk{0x0E, 0x0B, 0x09};  // sunken backgrounds
inline const QColor onRed{0xFF, 0xF3, 0xD6};     // text on the red of a primary button or a badge
inline const QColor strokeDark{0x6D, 0x1F, 0x19};
inline const QColor strokeLight{0x8C, 0x2A, 0x21};

[[nodiscard]] inline QColor withAlpha(QColor colour, double alpha) {
    colour.setAlphaF(static_cast<float>(alpha));
    return colour;
}

// `way`: 0 is the first, 1 the second; a spring may go a little beyond either.
[[nodiscard]] inline QColor between(const QColor& from, const QColor& to, double way) {
    const double at = std::clamp(way, 0.0, 1.0);
    const auto mixed = [at](int one, int other) { return static_cast<int>(one + (other - one) * at); };
    return {mixed(from.red(), to.red()), mixed(from.green(), to.green()), mixed(from.blue(), to.blue())};
}

}  // namespace vantor::palette
