#pragma once
// Whether the desktop's user wants less motion, from the desktop's settings on the session bus. Main thread.

#include <QtCore/QVariant>
#include <functional>
#include <optional>

namespace vantor {

// Asks the settings portal and returns at once; the answer comes later, and never where no portal gives one within two
// seconds.
void askReducedMotion(std::function<void(bool reduced)> answer);

// What the portal's value of this setting says; nothing for a value of another type. The settings:
// org.gnome.desktop.interface enable-animations (a boolean), org.kde.kdeglobals.KDE AnimationDurationFactor (a number
// as text, 0 for none).
[[nodiscard]] std::optional<bool> reducedMotionIn(const QVariant& portalValue);

}  // namespace vantor
