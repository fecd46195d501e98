#include "app/AppDelegate.h"

#include <utility>

namespace vantor {

AppDelegate::AppDelegate(const AppObserver::Needs& needs, std::function<void()> quit)
    : appObserver_(needs),
      statusBarIcon_(needs.statusItem, appObserver_.credentials(), [this] { return appObserver_.addAppMenuItem(); },
                     {.toggleApp = [this] { (void)appObserver_.toggleApp(); },
                      .fillCredentials = [this](const std::string& name) { appObserver_.fillCredentials(name); },
                      .quit = std::move(quit)}) {}

}  // namespace vantor
