#pragma once
// What is used of the system's accessibility permission, as its public documentation declares it.

#import <CoreFoundation/CoreFoundation.h>

extern "C" const CFStringRef kAXTrustedCheckOptionPrompt;
extern "C" Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);
