#pragma once
// What is used of the system's plain types, as their public documentation declares them. Each is the object of the same
// name behind another type.

#import <Foundation/Foundation.h>

#include <cstdint>

typedef unsigned char Boolean;
typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFBoolean* CFBooleanRef;

extern "C" {

extern CFBooleanRef kCFBooleanTrue, kCFBooleanFalse;
extern const CFStringRef kCFBundleNameKey;

void CFRelease(CFTypeRef object);
}
