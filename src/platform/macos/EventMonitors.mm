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

// What the system has returned for a monitor, until it is removed.
Subscription removing(id token) {
    [token retain];
    return Subscription([token] {
        if (token) [NSEvent removeMonitor:token];
        [token release];
    });
}

}  // namespace

Subscription EventMonitors::addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) {
    return removing([NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                           handler:^(NSEvent* event) {
                                                             if (const auto key = seamEvent(event)) handler(*key);
                                                           }]);
}

Subscription EventMonitors::addLocalMonitor(KeyEventMask mask, LocalHandler handler) {
    return removing([NSEvent addLocalMonitorForEventsMatchingMask:mask
                                                          handler:^NSEvent*(NSEvent* event) {
                                                            const auto key = seamEvent(event);
                                                            if (key && handler(*key) == Passing::swallow) return nil;
                                                            return event;
                                                          }]);
}

}  // namespace vantor
