// What the system keeps for all programs: permissions and keychain.

#import <ApplicationServices/ApplicationServices.h>

#include "Mac.h"

using macdouble::mac;
using macdouble::note;

CFBooleanRef kCFBooleanTrue, kCFBooleanFalse;
const CFStringRef kCFBundleNameKey = (CFStringRef) @"CFBundleName";
const CFStringRef kAXTrustedCheckOptionPrompt = (CFStringRef) @"kAXTrustedCheckOptionPrompt";
const CFStringRef kSecClass = (CFStringRef) @"kSecClass";
const CFStringRef kSecClassGenericPassword = (CFStringRef) @"kSecClassGenericPassword";
const CFStringRef kSecAttrAccount = (CFStringRef) @"kSecAttrAccount";
const CFStringRef kSecValueData = (CFStringRef) @"kSecValueData";
const CFStringRef kSecReturnData = (CFStringRef) @"kSecReturnData";
const CFStringRef kSecMatchLimit = (CFStringRef) @"kSecMatchLimit";
const CFStringRef kSecMatchLimitOne = (CFStringRef) @"kSecMatchLimitOne";

void CFRelease(CFTypeRef object) { [(id)object release]; }

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    if ([[(NSDictionary*)options objectForKey:(NSString*)kAXTrustedCheckOptionPrompt] boolValue])
        note("ask for accessibility");
    return mac().trusted;
}

// The other kind of request is another permission, which nothing here needs.
IOHIDAccessType IOHIDCheckAccess(IOHIDRequestType requestType) {
    return requestType == kIOHIDRequestTypeListenEvent ? mac().listening : kIOHIDAccessTypeDenied;
}

bool IOHIDRequestAccess(IOHIDRequestType requestType) {
    note(requestType == kIOHIDRequestTypeListenEvent ? "ask for listening" : "ask for posting");
    return false;
}

// Every item that has what the query names.
static NSArray* matching(CFDictionaryRef query) {
    NSMutableArray* const found = [NSMutableArray array];
    for (NSDictionary* item in mac().keychainItems) {
        bool same = true;
        for (id key in @[ (id)kSecClass, (id)kSecAttrAccount ]) {
            const id wanted = [(NSDictionary*)query objectForKey:key];
            if (wanted && ![wanted isEqual:[item objectForKey:key]]) same = false;
        }
        if (same) [found addObject:item];
    }
    return found;
}

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    if (mac().beforeCopying) mac().beforeCopying();
    if (mac().copyStatus != errSecSuccess) return mac().copyStatus;
    NSArray* const items = matching(query);
    if ([items count] == 0) return errSecItemNotFound;
    if ([(NSDictionary*)query objectForKey:(id)kSecReturnData] == (id)kCFBooleanTrue)
        *result = [[[items objectAtIndex:0] objectForKey:(id)kSecValueData] retain];
    return errSecSuccess;
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef*) {
    if (![(NSDictionary*)attributes objectForKey:(id)kSecClass]) return errSecParam;
    if ([matching(attributes) count] > 0) return errSecDuplicateItem;
    [mac().keychainItems addObject:[[(NSDictionary*)attributes copy] autorelease]];
    return errSecSuccess;
}

OSStatus SecItemDelete(CFDictionaryRef query) {
    if (mac().deleteStatus != errSecSuccess) return mac().deleteStatus;
    NSArray* const items = matching(query);
    [mac().keychainItems removeObjectsInArray:items];
    return [items count] > 0 ? errSecSuccess : errSecItemNotFound;
}
