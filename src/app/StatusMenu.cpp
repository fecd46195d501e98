#include "app/StatusMenu.h"

#include <utility>

namespace vantor {

namespace {

MenuEntry action(std::string title, std::function<void()> run) {
    return {.title = std::move(title), .action = std::move(run), .submenu = {}};
}

}  // namespace

std::vector<MenuEntry> statusMenu(const ToggleEntry& toggle, const std::vector<std::string>& usernames,
                                  const StatusMenuActions& actions) {
    MenuEntry fill = action("Fill credentials", {});
    for (const std::string& username : usernames)
        fill.submenu.push_back(action(username, [run = actions.fillCredentials, username] { run(username); }));
    if (usernames.empty()) {
        fill.submenu.push_back(action("No accounts found, add new in settings", {}));
        fill.submenu.back().enabled = false;
    }
    std::vector<MenuEntry> entries;
    entries.push_back(action(toggle.title, actions.toggleApp));
    entries.back().enabled = toggle.enabled;
    entries.push_back(std::move(fill));
    entries.push_back({.kind = MenuEntry::Kind::separator, .title = {}, .action = {}, .submenu = {}});
    entries.push_back(action("Quit", actions.quit));
    return entries;
}

StatusMenu::StatusMenu(StatusItem& statusItem, AccountsCredentials& credentials, Toggle toggle,
                       StatusMenuActions actions)
    : statusItem_(statusItem), credentials_(credentials), toggle_(std::move(toggle)), actions_(std::move(actions)) {
    statusItem_.setMenu("Vantor", entries());
    untilKnown_ = credentials_.observe([this] { fillOnce(); });
    fillOnce();
}

std::vector<MenuEntry> StatusMenu::entries() const { return statusMenu(toggle_(), usernames_, actions_); }

void StatusMenu::fillOnce() {
    if (credentials_.storage() != AccountsCredentials::Storage::known) return;
    untilKnown_.reset();
    if (credentials_.accounts().empty()) return;
    for (const auto& [username, password] : credentials_.accounts()) usernames_.push_back(username);
    statusItem_.setMenu("Vantor", entries());
}

}  // namespace vantor
