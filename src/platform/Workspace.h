#pragma once
// The desktop's applications: which one is frontmost, what it is called, and the way back to it. Main thread.

#include <functional>
#include <optional>
#include <string>

#include "base/Subscription.h"

namespace vantor {

// Vantor's own, as the desktop knows it.
inline constexpr const char* ownIdentifier = "orvendel.Vantor";

// Whether another client of the display keeps every click to itself.
enum class PointerHold {
    none,
    lasting,  // as a full-screen game does while it has the focus
    passing,  // a button is down, or the keyboard is held too: a drag, a menu, a switcher of windows
};

class Workspace {
public:
    // The identifier of the frontmost application; empty when there is none or it has none.
    using FrontmostHandler = std::function<void(const std::string& identifier)>;

    virtual ~Workspace() = default;
    // Calls the handler once before it returns, then at every change.
    virtual Subscription observeFrontmostApplication(FrontmostHandler handler) = 0;
    [[nodiscard]] virtual std::optional<std::string> displayName(const std::string& identifier) const = 0;
    // Hands the keyboard focus to the application that had it before Vantor, with Vantor's windows left in place.
    // Changes nothing when no window of Vantor has the focus. Never waits.
    virtual void hideAndUnhideWithoutActivation() = 0;
    // As it is at this call.
    [[nodiscard]] virtual PointerHold pointerHold() const = 0;
};

}  // namespace vantor
