#include "KeychainDouble.h"

// The system's own texts behind these names are nobody's business; that they differ is.
const CFStringRef kSecClass = (CFStringRef) @"kSecClass";
const CFStringRef kSecClassGenericPassword = (CFStringRef) @"kSecClassGenericPassword";
const CFStringRef kSecAttrAccount = (CFStringRef) @"kSecAttrAccount";
const CFStringRef kSecValueData = (CFStringRef) @"kSecValueData";
const CFStringRef kSecReturnData = (CFStringRef) @"kSecReturnData";
const CFStringRef kSecMatchLimit = (CFStringRef) @"kSecMatchLimit";
const CFStringRef kSecMatchLimitOne = (CFStringRef) @"kSecMatchLimitOne";

namespace macdouble {

namespace {

void keep(const char* call, CFDictionaryRef dictionary) {
    keychainDouble().questions.push_back({call, [(NSDictionary*)dictionary copy], dictionary});
}

bool matches(NSDictionary* item, NSDictionary* query) {
    for (NSString* key in @[ (NSString*)kSecClass, (NSString*)kSecAttrAccount ])
        if (![[item objectForKey:key] isEqual:[query objectForKey:key]]) return false;
    return true;
}

NSDictionary* find(NSDictionary* query) {
    for (NSDictionary* item in keychainDouble().items)
        if (matches(item, query)) return item;
    return nil;
}

}  // namespace

void KeychainDouble::forget() {
    for (const Question& question : questions) [question.dictionary release];
    questions.clear();
    [items removeAllObjects];
    copyStatus = deleteStatus = addStatus = errSecSuccess;
    [copyResult release];
    copyResult = nil;
    beforeCopying = nullptr;
}

KeychainDouble& keychainDouble() {
    static KeychainDouble keychain;
    return keychain;
}

}  // namespace macdouble

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    auto& keychain = macdouble::keychainDouble();
    macdouble::keep("copy", query);
    if (keychain.beforeCopying) keychain.beforeCopying();
    if (keychain.copyStatus != errSecSuccess) return keychain.copyStatus;
    if (keychain.copyResult) {
        *result = [keychain.copyResult retain];
        return errSecSuccess;
    }
    NSDictionary* const item = macdouble::find((NSDictionary*)query);
    if (!item) return errSecItemNotFound;
    *result = [[item objectForKey:(NSString*)kSecValueData] retain];
    return errSecSuccess;
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result) {
    auto& keychain = macdouble::keychainDouble();
    macdouble::keep(result ? "add for a result" : "add", attributes);
    if (keychain.addStatus != errSecSuccess) return keychain.addStatus;
    if (macdouble::find((NSDictionary*)attributes)) return errSecDuplicateItem;
    [keychain.items addObject:[[(NSDictionary*)attributes copy] autorelease]];
    return errSecSuccess;
}

OSStatus SecItemDelete(CFDictionaryRef query) {
    auto& keychain = macdouble::keychainDouble();
    macdouble::keep("delete", query);
    if (keychain.deleteStatus != errSecSuccess) return keychain.deleteStatus;
    NSDictionary* const item = macdouble::find((NSDictionary*)query);
    if (!item) return errSecItemNotFound;
    while (NSDictionary* each = macdouble::find((NSDictionary*)query)) [keychain.items removeObject:each];
    return errSecSuccess;
}
