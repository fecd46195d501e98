#pragma once
// What is used of the system's font registration, as its public documentation declares it.

#import <CoreFoundation/CoreFoundation.h>
#include <cstdint>

enum CTFontManagerScope : uint32_t {
    kCTFontManagerScopeNone = 0,
    kCTFontManagerScopeProcess = 1,
    kCTFontManagerScopePersistent = 2,
    kCTFontManagerScopeSession = 3,
};

enum CTFontManagerError : CFIndex {
    kCTFontManagerErrorFileNotFound = 101,
    kCTFontManagerErrorInsufficientPermissions = 102,
    kCTFontManagerErrorUnrecognizedFormat = 103,
    kCTFontManagerErrorInvalidFontData = 104,
    kCTFontManagerErrorAlreadyRegistered = 105,
};

extern "C" {

// The caller releases the error.
bool CTFontManagerRegisterFontsForURL(CFURLRef fontURL, CTFontManagerScope scope, CFErrorRef* error);
}
