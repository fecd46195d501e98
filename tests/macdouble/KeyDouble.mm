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

@interface MonitorToken : NSObject {
@public
    bool global, deaf;
    NSEventMask mask;
    void* handler;
}
@end

@implementation MonitorToken
- (void)dealloc {
    Block_release(handler);
    [super dealloc];
}
@end

namespace {

constexpr CGKeyCode firstModifierKey = 54;  // the right Command key
constexpr CGKeyCode lastModifierKey = 63;   // Function

DoubleCGEvent* of(CGEventRef event) { return (DoubleCGEvent*)event; }

// The keys of an American keyboard that the tests need; every other key gives nothing.
NSString* charactersOf(CGEventRef event, CGEventFlags flags) {
    if (of(event)->type == kCGEventFlagsChanged)
        [NSException raise:NSInternalInconsistencyException format:@"characters of a modifier key"];
    struct Key {
        CGKeyCode code;
        NSString *plain, *withShift;
    };
    static const Key keys[] = {{0, @"a", @"A"},  {7, @"x", @"X"},    {8, @"c", @"C"},    {9, @"v", @"V"},
                               {23, @"5", @"%"}, {36, @"\r", @"\r"}, {48, @"\t", @"\t"}, {87, @"5", @"5"}};
    const CGKeyCode code = of(event)->keyCode;
    if (code == 0 && flags & (NSEventModifierFlagControl | NSEventModifierFlagOption))
        return flags & NSEventModifierFlagControl ? @"\x01" : @"å";
    for (const Key& each : keys)
        if (each.code == code) return flags & NSEventModifierFlagShift ? each.withShift : each.plain;
    return @"";
}

NSMutableArray* monitors() {
    macdouble::needsMainThread();
    static NSMutableArray* const all = [[NSMutableArray alloc] init];
    return all;
}

id addMonitor(bool global, NSEventMask mask, id handler) {
    MonitorToken* const token = [[[MonitorToken alloc] init] autorelease];
    token->global = global;
    // One that is added without the permission, or too early, stays deaf.
    const bool allowed = mac().listening == kIOHIDAccessTypeGranted || mac().hearsWhereTrusted;
    token->deaf = global && !(mac().trusted && allowed && mac().loopTurns);
    token->mask = mask;
    token->handler = Block_copy((void*)handler);
    [monitors() addObject:token];
    return token;
}

// Whether a window would still get it, and as it is.
bool deliver(CGEventRef event, bool here) {
    NSEvent* const sent = [NSEvent eventWithCGEvent:event];
    NSEvent* shown = sent;
    for (MonitorToken* each in [[monitors() copy] autorelease]) {  // one may remove itself
        if (each->global == here || each->deaf || (each->mask >> of(event)->type & 1) == 0) continue;
        void* const handler = Block_copy(each->handler);
        if (here)
            shown = ((NSEvent * (^)(NSEvent*))(id)handler)(shown);
        else
            ((void (^)(NSEvent*))(id)handler)(shown);
        Block_release(handler);
        if (!shown) return false;
    }
    return shown == sent;
}

DoubleCGEvent* eventOf(CGEventType type, CGKeyCode keyCode, CGEventFlags flags) {
    DoubleCGEvent* const event = [[[DoubleCGEvent alloc] init] autorelease];
    event->type = type;
    event->keyCode = keyCode;
    event->flags = flags;
    event->userData = 7;  // another program's mark
    return event;
}

}  // namespace

@implementation NSEvent
@synthesize CGEvent = event_, type = type_, keyCode = keyCode_, modifierFlags = modifierFlags_;
+ (NSEvent*)eventWithCGEvent:(CGEventRef)cgEvent {
    NSEvent* const event = [[[NSEvent alloc] init] autorelease];
    event->event_ = (CGEventRef)[of(cgEvent) retain];
    event->type_ = (NSEventType)of(cgEvent)->type;
    event->keyCode_ = of(cgEvent)->keyCode;
    event->modifierFlags_ = of(cgEvent)->flags;
    return event;
}
OWNS(of(event_))
+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block {
    return addMonitor(true, mask, (id)block);
}
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))block {
    return addMonitor(false, mask, (id)block);
}
+ (void)removeMonitor:(id)eventMonitor {
    [monitors() removeObject:eventMonitor];
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
    note((mac().active   ? "into Vantor: "
          : mac().hidden ? "while hidden: "
                         : "") +
         std::string(tap == kCGHIDEventTap ? "" : "not where keys come in: ") +
         (of(event)->type == kCGEventKeyDown ? "down " : "up ") + std::to_string(of(event)->keyCode) +
         (of(event)->flags != 0 ? " flags " + std::to_string(of(event)->flags) : ""));
}

bool macdouble::Mac::press(CGEventType type, CGKeyCode keyCode, CGEventFlags flags, bool here) {
    return deliver((CGEventRef)eventOf(type, keyCode, flags), here);
}
bool macdouble::Mac::hearPosted(bool here) { return deliver(lastPosted, here); }
bool macdouble::Mac::pressIn(NSView* view, CGKeyCode keyCode, CGEventFlags flags) {
    const auto event = (CGEventRef)eventOf(kCGEventKeyDown, keyCode, flags);
    return [view performKeyEquivalent:[NSEvent eventWithCGEvent:event]];
}
