#include "platform/macos/SecItemKeychain.h"

#import <Foundation/Foundation.h>
#import <Security/Security.h>

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <utility>

#include "platform/macos/FoundationText.h"

namespace vantor {

namespace {

// The seam's name of a class, and the system's.
NSString* systemClass(const std::string& itemClass) {
    return itemClass == "generic-password" ? (NSString*)kSecClassGenericPassword : nil;
}

// What the player can do about it, where the list of what Vantor needs can only say that nothing was stored.
void sayWhy(OSStatus status) {
    if (status == errSecInvalidOwnerEdit)
        std::fputs("vantor: the keychain: the logins belong to a Vantor with another signature; delete "
                   "\"orvendel.Vantor.accounts\" in Keychain Access to store them anew\n",
                   stderr);
    if (status == errSecMissingEntitlement)
        std::fputs("vantor: the keychain does not take this program's signature; start Vantor from its bundle, with "
                   "./run\n",
                   stderr);
}

// The item is found by these two and by nothing else. Nil for a class or a name that the system does not know.
NSMutableDictionary* attributes(const KeychainItem& item) {
    NSString* const itemClass = systemClass(item.itemClass);
    NSString* const account = systemText(item.account);
    if (!itemClass || !account) return nil;
    NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
    [dictionary setObject:itemClass forKey:(NSString*)kSecClass];
    [dictionary setObject:account forKey:(NSString*)kSecAttrAccount];
    return dictionary;
}

KeychainStatus seamStatus(OSStatus status) {
    switch (status) {
        case errSecSuccess:
            return KeychainStatus::done;
        case errSecItemNotFound:
            return KeychainStatus::notFound;
        case errSecInteractionNotAllowed:
            return KeychainStatus::locked;
        case errSecAuthFailed:
        case errSecUserCanceled:
        case errSecInvalidOwnerEdit:
        case errSecMissingEntitlement:
        // There is one still, which the system refused to remove.
        case errSecDuplicateItem:
            return KeychainStatus::refused;
        default:
            return KeychainStatus::unavailable;
    }
}

KeychainStatus copied(const KeychainItem& item, std::string& data) {
    NSMutableDictionary* const query = attributes(item);
    if (!query) return KeychainStatus::notFound;
    [query setObject:(id)kCFBooleanTrue forKey:(NSString*)kSecReturnData];
    [query setObject:(id)kSecMatchLimitOne forKey:(NSString*)kSecMatchLimit];
    CFTypeRef result = nullptr;
    const OSStatus status = SecItemCopyMatching((CFDictionaryRef)query, &result);
    const id object = [(id)result autorelease];
    sayWhy(status);
    if (status != errSecSuccess) return seamStatus(status);
    if (![object isKindOfClass:[NSData class]]) return KeychainStatus::notFound;
    NSData* const bytes = object;
    data.assign(static_cast<const char*>([bytes bytes]), [bytes length]);
    return KeychainStatus::done;
}

KeychainStatus replaced(const KeychainItem& item, const std::string& data) {
    NSMutableDictionary* const entry = attributes(item);
    if (!entry) return KeychainStatus::unavailable;
    [entry setObject:[NSData dataWithBytes:data.data() length:data.size()] forKey:(NSString*)kSecValueData];
    // The very dictionary that is added. Its verdict decides nothing: where the old item stays, adding says so.
    sayWhy(SecItemDelete((CFDictionaryRef)entry));
    const OSStatus added = SecItemAdd((CFDictionaryRef)entry, nullptr);
    sayWhy(added);
    return seamStatus(added);
}

}  // namespace

// The questions that the system has not yet answered.
struct SecItemKeychain::Pending {
    std::mutex mutex;
    std::condition_variable answered;
    int questions = 0;

    void ask() {
        const std::lock_guard lock(mutex);
        ++questions;
    }
    void answer() {
        {
            const std::lock_guard lock(mutex);
            --questions;
        }
        answered.notify_all();
    }
};

SecItemKeychain::SecItemKeychain(TaskQueue& queue, MainThread& mainThread)
    : queue_(queue),
      mainThread_(mainThread),
      pending_(std::make_shared<Pending>()),
      alive_(std::make_shared<const bool>(true)) {}

SecItemKeychain::~SecItemKeychain() = default;

void SecItemKeychain::copyMatching(const KeychainItem& item, Prompt, Copied answer) {
    pending_->ask();
    queue_.post([item, answer = std::move(answer), &mainThread = mainThread_, pending = pending_,
                 alive = std::weak_ptr(alive_)] {
        std::string data;
        KeychainStatus status;
        @autoreleasepool {
            status = copied(item, data);
        }
        mainThread.post([answer, status, data = std::move(data), alive] {
            if (!alive.expired()) answer(status, data);
        });
        pending->answer();
    });
}

void SecItemKeychain::replace(const KeychainItem& item, const std::string& data, Answered answer) {
    pending_->ask();
    queue_.post([item, data, answer = std::move(answer), &mainThread = mainThread_, pending = pending_,
                 alive = std::weak_ptr(alive_)] {
        KeychainStatus status;
        @autoreleasepool {
            status = replaced(item, data);
        }
        mainThread.post([answer, status, alive] {
            if (!alive.expired()) answer(status);
        });
        pending->answer();
    });
}

bool SecItemKeychain::finish(std::chrono::milliseconds atMost) {
    std::unique_lock lock(pending_->mutex);
    return pending_->answered.wait_for(lock, atMost, [this] { return pending_->questions == 0; });
}

}  // namespace vantor
