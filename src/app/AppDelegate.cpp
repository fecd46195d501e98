#include "app/AppDelegate.h"

#include <utility>

namespace vantor {

AppDelegate::AppDelegate(const AppObserver::Needs& needs, std::function<void()> quit)
    : appObserver_(needs), statusBarIcon_(needs.statusItem) {
    std::vector<MenuEntry> entries;
    entries.push_back(
        {.title = appObserver_.addAppMenuItemTitle(), .action = [this] { appObserver_.toggleApp(); }, .submenu = {}});
    entries.push_back({.kind = MenuEntry::Kind::separator, .title = {}, .action = {}, .submenu = {}});
    entries.push_back({.title = "Quit", .action = std::move(quit), .submenu = {}});
    statusBarIcon_.setMenu("Vantor", std::move(entries));
}

}  // namespace vantor
