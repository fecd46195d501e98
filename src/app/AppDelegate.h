#pragma once
// The launch: the application's state first, then the item in the status bar. Main thread.

#include <functional>

#include "app/AppObserver.h"

namespace vantor {

class AppDelegate {
public:
    // quit: ends the process at once with status 0; nothing is saved at the end.
    AppDelegate(const AppObserver::Needs& needs, std::function<void()> quit);

    [[nodiscard]] AppObserver& appObserver() { return appObserver_; }

private:
    AppObserver appObserver_;
    StatusItem& statusBarIcon_;
};

}  // namespace vantor
