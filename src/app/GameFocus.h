#pragma once
// Which application is frontmost, whether the overlay may stand over it, and what the status menu offers for it. Main
// thread.

#include <optional>
#include <string>

#include "platform/Defaults.h"
#include "platform/Workspace.h"

namespace vantor {

// The status menu's entry for the current application.
struct ToggleEntry {
    std::string title;  // "Disable on " or "Enable on " and the application's name
    bool enabled = true;
};

class GameFocus {
public:
    GameFocus(const Workspace& workspace, Defaults& defaults) : workspace_(workspace), defaults_(defaults) {}

    void setCurrentApplication(const std::string& identifier) { curApp_ = identifier; }
    // Nothing before the first notice of the desktop; empty for an application without an identifier.
    [[nodiscard]] const std::optional<std::string>& curApp() const { return curApp_; }

    [[nodiscard]] bool isCurrentApplicationEnabled() const;
    void toggleCurrentApplication();
    [[nodiscard]] ToggleEntry toggleEntry() const;
    // Whether the main window may be given the focus: the overlay may stand over the application that has it now, and
    // over Vantor itself.
    [[nodiscard]] bool mayGiveFocusToVantor() const;

private:
    const Workspace& workspace_;
    Defaults& defaults_;
    std::optional<std::string> curApp_;
};

}  // namespace vantor
