#pragma once
// What is used of the system's accessibility library, as its public documentation declares it.

#import <CoreFoundation/CoreFoundation.h>

#include <sys/types.h>

typedef const struct __AXUIElement* AXUIElementRef;

enum AXError : int32_t { kAXErrorSuccess = 0, kAXErrorAPIDisabled = -25211 };

#define kAXFocusedApplicationAttribute ((CFStringRef) @"AXFocusedApplication")

extern "C" {

extern const CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

// The caller releases what the first makes and what the second finds.
AXUIElementRef AXUIElementCreateSystemWide();
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value);
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds);
}
