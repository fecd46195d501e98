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
    // Waits only where Vantor was active: the system hides it in its own time.
    bool awaitFocusReturned(std::chrono::milliseconds atMost) override;
    // A window under the pointer gets its clicks, whoever has confined the pointer.
    [[nodiscard]] PointerHold pointerHold() const override { return PointerHold::none; }
    // Whether keys that are posted now would go to Vantor itself, as the last wait has found.
    [[nodiscard]] bool keptFocus() const { return keptFocus_; }

private:
    bool wasActive_ = false;
    bool keptFocus_ = false;
};

}  // namespace vantor
