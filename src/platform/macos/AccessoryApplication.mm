#include "platform/macos/AccessoryApplication.h"

#import <AppKit/NSApplication.h>

namespace vantor {

void becomeAccessoryApplication() {
    [[NSApplication sharedApplication] setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

}  // namespace vantor
