#pragma once
// A keychain in memory that keeps every dictionary which it is asked with, and answers what a test wants.

#import <Foundation/Foundation.h>
#import <Security/Security.h>

#include <functional>
#include <string>
#include <vector>

namespace macdouble {

struct KeychainDouble {
    struct Question {
        std::string call;
        NSDictionary* dictionary;  // a copy, which the double keeps
        const void* asked;         // the dictionary itself, to be compared only
    };

    std::vector<Question> questions;
    NSMutableArray* items = [[NSMutableArray alloc] init];
    // Instead of what the items say.
    OSStatus copyStatus = errSecSuccess;
    OSStatus deleteStatus = errSecSuccess;
    OSStatus addStatus = errSecSuccess;
    id copyResult = nil;
    // As long as the player is being asked.
    std::function<void()> beforeCopying;

    void forget();
};

KeychainDouble& keychainDouble();

}  // namespace macdouble
