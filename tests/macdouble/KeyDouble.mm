#include "KeyDouble.h"

#include <Block.h>

#import <Foundation/Foundation.h>

#include <memory>

#include "ServiceCalls.h"
#include "platform/Keys.h"

// A bare object: the system's events are plain structures to their users, and are counted like objects.
@interface DoubleCGEvent : NSObject {
@public
    CGKeyCode keyCode;
    CGEventType type;
    CGEventFlags flags;
    int64_t userData;
}
@end

namespace {

struct Monitor {
    bool global;
    NSEventMask mask;
    id handler;
    id token;
};

struct Keyboard {
    macdouble::Layout layout;
    bool refuses = false;
    int live = 0;
    int made = 0;
    std::vector<Monitor> monitors;
    CGEventRef posted = nullptr;
};

constexpr CGKeyCode firstModifierKey = 54;  // the right Command key
constexpr CGKeyCode lastModifierKey = 63;   // Function

Keyboard& keyboard() {
    static Keyboard one;
    return one;
}

DoubleCGEvent* of(CGEventRef event) { return (DoubleCGEvent*)event; }

const char* nameOf(CGEventType type) {
    return type == kCGEventKeyDown ? "down" : type == kCGEventKeyUp ? "up" : "flags";
}

std::string keyText(CGEventRef event) {
    return std::string(nameOf(of(event)->type)) + " " + std::to_string(of(event)->keyCode) +
           (of(event)->flags != 0 ? " flags " + std::to_string(of(event)->flags) : std::string());
}

CGEventRef hardwareEvent(CGEventType type, CGKeyCode keyCode, CGEventFlags flags) {
    DoubleCGEvent* const event = [[[DoubleCGEvent alloc] init] autorelease];
    event->type = type;
    event->keyCode = keyCode;
    event->flags = flags;
    return (CGEventRef)event;
}

// Whether a window would still get it, and as it is.
bool deliver(CGEventRef event, bool global) {
    NSEvent* const sent = [NSEvent eventWithCGEvent:event];
    NSEvent* shown = sent;
    const auto monitors = keyboard().monitors;  // one may remove itself
    for (const Monitor& each : monitors) {
        if (each.global != global || (each.mask >> of(event)->type & 1) == 0) continue;
        void* const handler = Block_copy((void*)each.handler);
        if (global)
            ((void (^)(NSEvent*))(id)handler)(shown);
        else
            shown = ((NSEvent * (^)(NSEvent*))(id)handler)(shown);
        Block_release(handler);
        if (!shown) return false;
    }
    return shown == sent;
}

NSString* charactersOf(CGEventRef event, CGEventFlags flags) {
    if (of(event)->type == kCGEventFlagsChanged)
        [NSException raise:NSInternalInconsistencyException format:@"characters of a modifier key"];
    if (!keyboard().layout) return nil;
    return [NSString stringWithUTF8String:keyboard().layout(of(event)->keyCode, flags).c_str()];
}

id addMonitor(bool global, NSEventMask mask, id handler) {
    macdouble::serviceCalls().add(std::string(global ? "global" : "local") + " monitor " + std::to_string(mask));
    id token = [[[NSObject alloc] init] autorelease];
    keyboard().monitors.push_back({global, mask, (id)Block_copy((void*)handler), token});
    return token;
}

}  // namespace

@implementation DoubleCGEvent
- (instancetype)init {
    self = [super init];
    ++keyboard().live;
    return self;
}
- (void)dealloc {
    --keyboard().live;
    [super dealloc];
}
@end

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
    auto& monitors = keyboard().monitors;
    for (std::size_t at = 0; at < monitors.size(); ++at) {
        if (monitors[at].token != eventMonitor) continue;
        macdouble::serviceCalls().add("remove monitor " + std::to_string(monitors[at].mask));
        Block_release((void*)monitors[at].handler);
        monitors.erase(monitors.begin() + static_cast<std::ptrdiff_t>(at));
        return;
    }
    macdouble::serviceCalls().add("remove no monitor");
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
    // Flags that are no modifiers are none here: by this the test tells the two questions apart.
    if (modifiers & vantor::modifier::nonCoalesced) return @"";
    return charactersOf(event_, modifiers);
}
@end

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown) {
    if (keyboard().refuses) return nullptr;
    if (source) macdouble::serviceCalls().add("an event source");
    ++keyboard().made;
    DoubleCGEvent* const event = [[DoubleCGEvent alloc] init];
    event->keyCode = virtualKey;
    // The system makes another kind of event for its modifier keys.
    const bool isModifier = virtualKey >= firstModifierKey && virtualKey <= lastModifierKey;
    event->type = isModifier ? kCGEventFlagsChanged : keyDown ? kCGEventKeyDown : kCGEventKeyUp;
    return (CGEventRef)event;
}
void CGEventSetType(CGEventRef event, CGEventType type) { of(event)->type = type; }
CGEventType CGEventGetType(CGEventRef event) { return of(event)->type; }
void CGEventSetFlags(CGEventRef event, CGEventFlags flags) { of(event)->flags = flags; }
CGEventFlags CGEventGetFlags(CGEventRef event) { return of(event)->flags; }
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value) {
    if (field == kCGEventSourceUserData) of(event)->userData = value;
}
int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field) {
    return field == kCGEventSourceUserData ? of(event)->userData : 0;
}
void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
    macdouble::serviceCalls().add("post to tap " + std::to_string(tap) + ": " + keyText(event));
    keyboard().posted = event;
}

namespace macdouble {

void setLayout(Layout layout) { keyboard().layout = std::move(layout); }
void refuseEvents(bool refuse) { keyboard().refuses = refuse; }
int liveEvents() { return keyboard().live; }
int madeEvents() { return keyboard().made; }
void pressElsewhere(CGEventType type, CGKeyCode keyCode, CGEventFlags flags) {
    deliver(hardwareEvent(type, keyCode, flags), true);
}
bool pressHere(CGEventType type, CGKeyCode keyCode, CGEventFlags flags) {
    return deliver(hardwareEvent(type, keyCode, flags), false);
}
bool hear(CGEventRef posted) {
    deliver(posted, true);
    return deliver(posted, false);
}
CGEventRef lastPosted() { return keyboard().posted; }

}  // namespace macdouble
