#pragma once
// What is used of the system's font registration, as its public documentation declares it.

#import <CoreFoundation/CoreFoundation.h>

enum CTFontManagerScope : uint32_t { kCTFontManagerScopeProcess = 1 };
enum CTFontManagerError : CFIndex {
    kCTFontManagerErrorFileNotFound = 101,
    kCTFontManagerErrorUnrecognizedFormat = 103,
    kCTFontManagerErrorAlreadyRegistered = 105,
};

// The caller releases the error.
extern "C" bool CTFontManagerRegisterFontsForURL(CFURLRef fontURL, CTFontManagerScope scope, CFErrorRef* error);
