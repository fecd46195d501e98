#pragma once
// The menu of the status item: what it says now, as a value, and its place in the status bar. The floating icon shows
// the same one. Main thread.

#include <functional>
#include <string>
#include <vector>

#include "accounts/AccountsCredentials.h"
#include "app/GameFocus.h"
#include "platform/StatusItem.h"

namespace vantor {

struct StatusMenuActions {
    std::function<void()> toggleApp;
    std::function<void(const std::string& username)> fillCredentials;
    std::function<void()> quit;
};

// Position of the entry whose title follows the frontmost application.
inline constexpr std::size_t toggleAppPosition = 0;

// Without names the submenu holds one disabled entry, a hint.
[[nodiscard]] std::vector<MenuEntry> statusMenu(const ToggleEntry& toggle, const std::vector<std::string>& usernames,
                                                const StatusMenuActions& actions);

class StatusMenu {
public:
    using Toggle = std::function<ToggleEntry()>;

    // All of it outlives the menu. The status item's first entry is kept current by its owner.
    StatusMenu(StatusItem& statusItem, AccountsCredentials& credentials, Toggle toggle, StatusMenuActions actions);

    [[nodiscard]] std::vector<MenuEntry> entries() const;

private:
    void fillOnce();

    StatusItem& statusItem_;
    AccountsCredentials& credentials_;
    Toggle toggle_;
    StatusMenuActions actions_;
    // Those that were stored when the program started: filled once, as soon as the keychain has told them.
    std::vector<std::string> usernames_;
    Subscription untilKnown_;
};

}  // namespace vantor
