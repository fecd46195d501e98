#pragma once
// What is used of the keychain's item calls, as their public documentation declares them.

#import <CoreFoundation/CoreFoundation.h>

typedef int OSStatus;

enum : OSStatus {
    errSecSuccess = 0,
    errSecParam = -50,
    errSecUserCanceled = -128,
    errSecInvalidOwnerEdit = -25244,
    errSecNotAvailable = -25291,
    errSecAuthFailed = -25293,
    errSecDuplicateItem = -25299,
    errSecItemNotFound = -25300,
    errSecInteractionNotAllowed = -25308,
    errSecMissingEntitlement = -34018,
};

extern "C" {

extern const CFStringRef kSecClass, kSecClassGenericPassword, kSecAttrAccount, kSecValueData;
extern const CFStringRef kSecReturnData, kSecMatchLimit, kSecMatchLimitOne;

// The caller releases the result.
OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result);
OSStatus SecItemDelete(CFDictionaryRef query);
}
