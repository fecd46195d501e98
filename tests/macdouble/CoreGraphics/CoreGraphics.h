#pragma once
// What is used of the system's low-level events, as their public documentation declares them.

#import <CoreFoundation/CoreFoundation.h>

typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventSource* CGEventSourceRef;
typedef uint16_t CGKeyCode;
typedef uint64_t CGEventFlags;

enum CGEventType : uint32_t { kCGEventKeyDown = 10, kCGEventKeyUp = 11, kCGEventFlagsChanged = 12 };
enum CGEventTapLocation : uint32_t { kCGHIDEventTap = 0 };
enum CGEventField : uint32_t { kCGEventSourceUserData = 42 };

extern "C" {

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown);
void CGEventSetType(CGEventRef event, CGEventType type);
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value);
int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field);
void CGEventPost(CGEventTapLocation tap, CGEventRef event);
}
