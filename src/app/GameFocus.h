#pragma once
// Which application is frontmost, whether the overlay may stand over it, and what the status menu offers for it. Main
// thread.

#include <optional>
#include <string>

#include "platform/Defaults.h"
#include "platform/Workspace.h"

namespace vantor {

class GameFocus {
public:
    GameFocus(const Workspace& workspace, Defaults& defaults) : workspace_(workspace), defaults_(defaults) {}

    void setCurrentApplication(const std::string& identifier) { curApp_ = identifier; }
    // Nothing before the first notice of the desktop; empty for an application without an identifier.
    [[nodiscard]] const std::optional<std::string>& curApp() const { return curApp_; }

    [[nodiscard]] bool isCurrentApplicationEnabled() const;
    void toggleCurrentApplication();
    // "Disable on " or "Enable on " and the name of the current application.
    [[nodiscard]] std::string menuTitle() const;

private:
    const Workspace& workspace_;
    Defaults& defaults_;
    std::optional<std::string> curApp_;
};

}  // namespace vantor
