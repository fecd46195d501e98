#include "PrivacyDouble.h"

#import <Foundation/Foundation.h>

#include "ServiceCalls.h"

const CFStringRef kAXTrustedCheckOptionPrompt = (CFStringRef) @"kAXTrustedCheckOptionPrompt";

namespace macdouble {

PrivacyDouble& privacyDouble() {
    static PrivacyDouble privacy;
    return privacy;
}

}  // namespace macdouble

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    if ([[(NSDictionary*)options objectForKey:(NSString*)kAXTrustedCheckOptionPrompt] boolValue])
        macdouble::serviceCalls().add("ask for accessibility");
    else
        ++macdouble::privacyDouble().looks;
    return macdouble::privacyDouble().trusted;
}

IOHIDAccessType IOHIDCheckAccess(IOHIDRequestType requestType) {
    // The other kind of request is another permission, which nothing here needs.
    return requestType == kIOHIDRequestTypeListenEvent ? macdouble::privacyDouble().listening : kIOHIDAccessTypeDenied;
}

bool IOHIDRequestAccess(IOHIDRequestType requestType) {
    macdouble::serviceCalls().add(requestType == kIOHIDRequestTypeListenEvent ? "ask for listening"
                                                                              : "ask for posting");
    return false;
}
