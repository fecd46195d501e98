// The keyboard: events, what the layout makes of them, where they are posted, and the monitors.

#include <Block.h>

#include "Mac.h"

using macdouble::mac;
using macdouble::note;

// A bare object: the system's events are plain structures to their users, and are counted like objects.
@interface DoubleCGEvent : NSObject {
@public
    CGKeyCode keyCode;
    CGEventType type;
    CGEventFlags flags;
    int64_t userData;
}
@end

@implementation DoubleCGEvent
@end

@interface MonitorToken : NSObject
@end
@implementation MonitorToken
@end

namespace {

constexpr CGEventFlags shift = 0x20000;
constexpr CGEventFlags control = 0x40000;
constexpr CGEventFlags option = 0x80000;
constexpr CGKeyCode firstModifierKey = 54;  // the right Command key
constexpr CGKeyCode lastModifierKey = 63;   // Function

DoubleCGEvent* of(CGEventRef event) { return (DoubleCGEvent*)event; }

// The keys of an American keyboard that the tests need; every other key gives nothing.
NSString* charactersOf(CGEventRef event, CGEventFlags flags) {
    if (of(event)->type == kCGEventFlagsChanged)
        [NSException raise:NSInternalInconsistencyException format:@"characters of a modifier key"];
    const bool upper = (flags & shift) != 0;
    switch (of(event)->keyCode) {
        case 0:
            return flags & control ? @"\x01" : flags & option ? @"å" : upper ? @"A" : @"a";
        case 9:
            return upper ? @"V" : @"v";
        case 23:
            return upper ? @"%" : @"5";
        case 36:
            return @"\r";
        case 48:
            return @"\t";
        case 87:
            return @"5";
        default:
            return @"";
    }
}

struct Monitor {
    bool global;
    bool deaf;
    NSEventMask mask;
    id handler;
    id token;
};

std::vector<Monitor> monitors;

id addMonitor(bool global, NSEventMask mask, id handler) {
    // One that is added without the permissions stays deaf.
    const bool deaf = global && !(mac().trusted && mac().listening == kIOHIDAccessTypeGranted);
    const id token = [[[MonitorToken alloc] init] autorelease];
    monitors.push_back({global, deaf, mask, (id)Block_copy((void*)handler), token});
    return token;
}

// Whether a window would still get it, and as it is.
bool deliver(CGEventRef event, bool here) {
    NSEvent* const sent = [NSEvent eventWithCGEvent:event];
    NSEvent* shown = sent;
    const auto before = monitors;  // one may remove itself
    for (const Monitor& each : before) {
        if (each.global == here || each.deaf || (each.mask >> of(event)->type & 1) == 0) continue;
        void* const handler = Block_copy((void*)each.handler);
        if (here)
            shown = ((NSEvent * (^)(NSEvent*))(id)handler)(shown);
        else
            ((void (^)(NSEvent*))(id)handler)(shown);
        Block_release(handler);
        if (!shown) return false;
    }
    return shown == sent;
}

}  // namespace

@implementation NSEvent
+ (NSEvent*)eventWithCGEvent:(CGEventRef)cgEvent {
    NSEvent* const event = [[[NSEvent alloc] init] autorelease];
    event->event_ = (CGEventRef)[of(cgEvent) retain];
    return event;
}
- (void)dealloc {
    [of(event_) release];
    [super dealloc];
}
+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block {
    return addMonitor(true, mask, (id)block);
}
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))block {
    return addMonitor(false, mask, (id)block);
}
+ (void)removeMonitor:(id)eventMonitor {
    std::erase_if(monitors, [eventMonitor](const Monitor& each) {
        if (each.token == eventMonitor) Block_release((void*)each.handler);
        return each.token == eventMonitor;
    });
}
- (NSEventType)type {
    return (NSEventType)of(event_)->type;
}
- (unsigned short)keyCode {
    return of(event_)->keyCode;
}
- (NSEventModifierFlags)modifierFlags {
    return of(event_)->flags;
}
- (CGEventRef)CGEvent {
    return event_;
}
- (NSString*)characters {
    return charactersOf(event_, of(event_)->flags);
}
- (NSString*)charactersByApplyingModifiers:(NSEventModifierFlags)modifiers {
    return charactersOf(event_, modifiers);
}
@end

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef, CGKeyCode virtualKey, bool keyDown) {
    if (mac().refusesEvents) return nullptr;
    ++mac().madeEvents;
    DoubleCGEvent* const event = [[DoubleCGEvent alloc] init];
    event->keyCode = virtualKey;
    // The system makes another kind of event for its modifier keys.
    const bool isModifier = virtualKey >= firstModifierKey && virtualKey <= lastModifierKey;
    event->type = isModifier ? kCGEventFlagsChanged : keyDown ? kCGEventKeyDown : kCGEventKeyUp;
    return (CGEventRef)event;
}
void CGEventSetType(CGEventRef event, CGEventType type) { of(event)->type = type; }
void CGEventSetFlags(CGEventRef event, CGEventFlags flags) { of(event)->flags = flags; }
void CGEventSetIntegerValueField(CGEventRef event, CGEventField, int64_t value) { of(event)->userData = value; }
int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField) { return of(event)->userData; }

// Dropped without a word where the player has not allowed it.
void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
    if (!mac().trusted) return;
    mac().lastPosted = event;
    note((tap == kCGHIDEventTap ? "" : "not where keys come in: ") +
         std::string(of(event)->type == kCGEventKeyDown ? "down " : "up ") + std::to_string(of(event)->keyCode) +
         (of(event)->flags != 0 ? " flags " + std::to_string(of(event)->flags) : ""));
}

bool macdouble::Mac::press(CGEventType type, CGKeyCode keyCode, CGEventFlags flags, bool here) {
    DoubleCGEvent* const event = [[[DoubleCGEvent alloc] init] autorelease];
    event->type = type;
    event->keyCode = keyCode;
    event->flags = flags;
    event->userData = 7;  // another program's mark
    return deliver((CGEventRef)event, here);
}
bool macdouble::Mac::hearPosted(bool here) { return deliver(lastPosted, here); }
