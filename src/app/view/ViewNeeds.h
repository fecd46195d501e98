#pragma once
// What the views need besides the application's state; all of it outlives them. Main thread.

#include <functional>
#include <string>
#include <vector>

#include "app/SystemCapability.h"
#include "base/Scheduler.h"
#include "browser/WebAddresses.h"
#include "feedback/Appreciation.h"
#include "platform/OverlayWindows.h"
#include "platform/PageSource.h"
#include "platform/Screens.h"
#include "platform/StatusItem.h"
#include "translators/view/TranslatorView.h"

namespace vantor {

struct ViewNeeds {
    OverlayWindows& overlayWindows;
    Screens& screens;
    Scheduler& scheduler;
    WebHosts webHosts;
    std::string accountSite;       // of the game's maker: a host without a slash at the end
    std::string feedbackEndpoint;  // an address
    SupportData supportData;
    // Asked when the main window is shown first: the page exists by then.
    std::function<PageSource()> webPage;
    // Asked when its tab is shown first.
    std::function<TranslatorNeeds()> translator;
    std::function<std::vector<SystemCapability>()> examineSystem;
    // In the default browser.
    std::function<void(const std::string& address)> openLink;
    // Of the status item, as it is at this moment.
    std::function<std::vector<MenuEntry>()> menuEntries;
    // Hotkeys are spelled in words as well.
    bool pcKeyboards = false;
};

}  // namespace vantor
