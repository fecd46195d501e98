#pragma once
// Monitors whose keys a test presses. Remembers what was registered, in order. One thread.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/KeyMonitors.h"

namespace vantor {

class FakeKeyMonitors final : public KeyMonitors {
public:
    Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) override {
        return add({true, mask, [handler = std::move(handler)](const KeyEvent& event) {
                        handler(event);
                        return Passing::passOn;
                    }});
    }
    Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) override {
        return add({false, mask, std::move(handler)});
    }

    [[nodiscard]] Subscription withholdWithCommand(KeyCode) override {
        ++*withheld;
        return Subscription([counted = withheld] { --*counted; });
    }

    void pressInGame(const KeyEvent& event) { (void)send(true, event); }
    [[nodiscard]] Passing pressInVantor(const KeyEvent& event) { return send(false, event); }

    struct Monitor {
        bool global;
        KeyEventMask mask;
        LocalHandler handler;  // empty once removed
    };
    std::vector<std::shared_ptr<Monitor>> monitors;
    std::shared_ptr<int> withheld = std::make_shared<int>(0);  // how often at present

private:
    Subscription add(Monitor monitor) {
        auto kept = std::make_shared<Monitor>(std::move(monitor));
        monitors.push_back(kept);
        return Subscription([kept] { kept->handler = nullptr; });
    }
    Passing send(bool global, const KeyEvent& event) {
        for (const auto& monitor : std::vector(monitors)) {
            if (monitor->global != global || !(monitor->mask & maskOf(event.type)) || !monitor->handler) continue;
            if (monitor->handler(event) == Passing::swallow) return Passing::swallow;
        }
        return Passing::passOn;
    }
};

}  // namespace vantor
