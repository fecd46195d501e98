#include "platform/macos/EventMonitors.h"

#import <AppKit/NSEvent.h>

#include <optional>

#include "platform/macos/FoundationText.h"
#include "platform/macos/KeyboardEvents.h"

namespace vantor {

namespace {

constexpr KeyCode firstArrow = 123;
constexpr KeyCode lastArrow = 126;

// Nothing for what Vantor has posted itself.
std::optional<KeyEvent> seamEvent(NSEvent* event) {
    if (KeyboardEvents::isOwn([event CGEvent])) return std::nullopt;
    KeyEvent key;
    key.type = static_cast<KeyEventType>([event type]);
    key.keyCode = [event keyCode];
    key.flags = static_cast<ModifierFlags>([event modifierFlags]);
    // The system counts the arrows to the numeric pad. Whoever reads their name does not.
    if (key.keyCode >= firstArrow && key.keyCode <= lastArrow) key.flags &= ~modifier::numericPad;
    // A modifier key has no characters, and asking for them is an error.
    if (key.type != KeyEventType::flagsChanged)
        key.charactersWithoutModifiers = plainText([event charactersByApplyingModifiers:0]);
    return key;
}

void remove(id token) {
    if (token) [NSEvent removeMonitor:token];
    [token release];
}

}  // namespace

// A monitor of other applications' keys, as long as its subscription.
struct EventMonitors::Global {
    Global(KeyEventMask asked, GlobalHandler given, bool& any) : mask(asked), handler(std::move(given)), heard(any) {
        add();
    }
    ~Global() { remove(token); }
    Global(const Global&) = delete;
    Global& operator=(const Global&) = delete;

    void add() {
        // The block's own: the handler may end the subscription that it belongs to.
        const GlobalHandler kept = handler;
        bool* const any = &heard;
        token = [[NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                        handler:^(NSEvent* event) {
                                                          *any = true;
                                                          if (const auto key = seamEvent(event)) kept(*key);
                                                        }] retain];
    }

    KeyEventMask mask;
    GlobalHandler handler;
    bool& heard;
    id token = nil;
};

Subscription EventMonitors::addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) {
    globals_.push_back(std::make_shared<Global>(mask, std::move(handler), heardOthers_));
    return Subscription([this, added = globals_.back()] { std::erase(globals_, added); });
}

Subscription EventMonitors::addLocalMonitor(KeyEventMask mask, LocalHandler handler) {
    const id token = [[NSEvent addLocalMonitorForEventsMatchingMask:mask
                                                            handler:^NSEvent*(NSEvent* event) {
                                                              const auto key = seamEvent(event);
                                                              if (key && handler(*key) == Passing::swallow) return nil;
                                                              return event;
                                                            }] retain];
    return Subscription([token] { remove(token); });
}

void EventMonitors::renew() {
    for (const auto& each : globals_) {
        remove(each->token);
        each->add();
    }
}

}  // namespace vantor
