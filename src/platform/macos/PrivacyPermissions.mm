#include "platform/macos/PrivacyPermissions.h"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#import <IOKit/hidsystem/IOHIDLib.h>

namespace vantor {

namespace {

bool trusted(bool prompt) {
    @autoreleasepool {
        NSDictionary* const options = [NSDictionary dictionaryWithObject:(id)(prompt ? kCFBooleanTrue : kCFBooleanFalse)
                                                                  forKey:(NSString*)kAXTrustedCheckOptionPrompt];
        return AXIsProcessTrustedWithOptions((CFDictionaryRef)options);
    }
}

}  // namespace

bool PrivacyPermissions::granted(Kind kind) const {
    if (kind == Kind::pressKeys) return trusted(false);
    return heardKeys_() || IOHIDCheckAccess(kIOHIDRequestTypeListenEvent) == kIOHIDAccessTypeGranted;
}

void PrivacyPermissions::ask(Kind kind) {
    if (kind == Kind::hearKeys)
        (void)IOHIDRequestAccess(kIOHIDRequestTypeListenEvent);
    else
        (void)trusted(true);
}

}  // namespace vantor
