#pragma once
// The launch: the application's state first, then the item in the status bar. Main thread.

#include <functional>
#include <vector>

#include "app/AppObserver.h"
#include "app/StatusMenu.h"

namespace vantor {

class AppDelegate {
public:
    // quit: ends the process at once with status 0; nothing is saved at the end.
    AppDelegate(const AppObserver::Needs& needs, std::function<void()> quit);

    [[nodiscard]] AppObserver& appObserver() { return appObserver_; }
    // Of the status item's menu, for where there is no status bar.
    [[nodiscard]] std::vector<MenuEntry> menuEntries() const { return statusBarIcon_.entries(); }

private:
    AppObserver appObserver_;
    StatusMenu statusBarIcon_;
};

}  // namespace vantor
