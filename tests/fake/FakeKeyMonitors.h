#pragma once
// Monitors whose keys a test presses. One thread.

#include <memory>
#include <utility>

#include "base/ObserverList.h"
#include "platform/KeyMonitors.h"

namespace vantor {

class FakeKeyMonitors final : public KeyMonitors {
public:
    Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) override {
        return inGame_.add([mask, handler = std::move(handler)](const KeyEvent& event) {
            if (mask & maskOf(event.type)) handler(event);
        });
    }
    Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) override {
        return inVantor_.add([mask, handler = std::move(handler)](const KeyEvent& event) {
            return mask & maskOf(event.type) ? handler(event) : Passing::passOn;
        });
    }
    [[nodiscard]] Subscription withholdWithCommand(KeyCode) override {
        ++*withheld;
        return Subscription([counted = withheld] { --*counted; });
    }

    void offerToDesktop(const std::vector<DesktopShortcut>& shortcuts,
                        const std::function<void(const std::string& id)>& activated) override {
        offered = shortcuts;
        activate = activated;
    }

    void pressInGame(const KeyEvent& event) { inGame_.tell(event); }
    // The first that swallows it is the last that hears of it.
    [[nodiscard]] Passing pressInVantor(const KeyEvent& event) {
        Passing passing = Passing::passOn;
        inVantor_.visitWhile([&](const LocalHandler& monitor) {
            passing = monitor(event);
            return passing == Passing::passOn;
        });
        return passing;
    }

    std::shared_ptr<int> withheld = std::make_shared<int>(0);  // how often at present

    std::vector<DesktopShortcut> offered;
    std::function<void(const std::string& id)> activate;  // as the desktop does

private:
    ObserverList<GlobalHandler> inGame_;
    ObserverList<LocalHandler> inVantor_;
};

}  // namespace vantor
