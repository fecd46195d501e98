#pragma once
// The frontmost application by the system's workspace, names by the bundles, and the focus by hiding. Main thread,
// after the application object; what it is as the focus of typing is the typing thread's.

#include <atomic>

#include "platform/TypingFocus.h"
#include "platform/Workspace.h"

namespace vantor {

class SharedWorkspace final : public Workspace, public TypingFocus {
public:
    SharedWorkspace();

    Subscription observeFrontmostApplication(FrontmostHandler handler) override;
    [[nodiscard]] std::optional<std::string> displayName(const std::string& identifier) const override;
    // The application that was active before is active again; Vantor's windows stay where they are.
    void hideAndUnhideWithoutActivation() override;
    // A window under the pointer gets its clicks, whoever has confined the pointer.
    [[nodiscard]] PointerHold pointerHold() const override { return PointerHold::none; }
    // Waits only where Vantor was active: the system hides it in its own time.
    [[nodiscard]] bool awaitOther(std::chrono::milliseconds atMost) override;
    // Whether the same application is in front as far as the main thread has heard, which costs no question.
    [[nodiscard]] bool isKept() override;

private:
    std::atomic<bool> wasActive_{false};
    std::atomic<int> frontmost_{0};  // its process
    int typedInto_ = 0;
    Subscription frontmostObserver_;
};

}  // namespace vantor
