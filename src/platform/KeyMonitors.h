#pragma once
// Observes keys. Global monitors see the keys that go to other applications, local ones those that go to Vantor's
// own windows; one key reaches one kind only. Keys that Vantor posted itself reach none. Main thread.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/Subscription.h"
#include "platform/Keys.h"

namespace vantor {

using KeyEventMask = std::uint32_t;

[[nodiscard]] constexpr KeyEventMask maskOf(KeyEventType type) {
    return KeyEventMask{1} << static_cast<unsigned>(type);
}

// A shortcut that a desktop may listen for by itself; which keys it has there is the player's choice.
struct DesktopShortcut {
    std::string id;
    std::string description;
    std::string trigger;  // what it could be, such as "CTRL+SHIFT+t" (XDG shortcuts); empty for no wish

    bool operator==(const DesktopShortcut&) const = default;
};

class KeyMonitors {
public:
    enum class Passing { passOn, swallow };
    using GlobalHandler = std::function<void(const KeyEvent&)>;
    using LocalHandler = std::function<Passing(const KeyEvent&)>;

    virtual ~KeyMonitors() = default;
    // Handlers run in the order of their registration; the end of the subscription removes the monitor.
    virtual Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) = 0;
    virtual Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) = 0;
    // Keeps the key together with Command from the application in front until the subscription ends; the monitors hear
    // it all the same. Nothing where the system has no way to.
    [[nodiscard]] virtual Subscription withholdWithCommand(KeyCode) { return {}; }
    // Has the desktop listen for these where the monitors do not hear every window's keys; once. The ids of those that
    // are pressed are told for as long as this lives.
    virtual void offerToDesktop(const std::vector<DesktopShortcut>&,
                                const std::function<void(const std::string& id)>&) {}
};

}  // namespace vantor
