#pragma once
// The frontmost application by the system's workspace, names by the bundles, and the focus by hiding. Main thread,
// after the application object.

#include "platform/Workspace.h"

namespace vantor {

class SharedWorkspace final : public Workspace {
public:
    Subscription observeFrontmostApplication(FrontmostHandler handler) override;
    [[nodiscard]] std::optional<std::string> displayName(const std::string& identifier) const override;
    // The application that was active before is active again; Vantor's windows stay where they are.
    void hideAndUnhideWithoutActivation() override;
    // Nothing can be waited for: who is active the system tells only in the event loop's next turn. What is posted goes
    // out right behind the order to hide.
    bool awaitFocusReturned(std::chrono::milliseconds) override { return true; }
    // A window under the pointer gets its clicks, whoever has confined the pointer.
    [[nodiscard]] PointerHold pointerHold() const override { return PointerHold::none; }
};

}  // namespace vantor
