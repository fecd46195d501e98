#pragma once
// The system's privacy settings as a test switches them.

#include <ApplicationServices/ApplicationServices.h>
#include <IOKit/hidsystem/IOHIDLib.h>

namespace macdouble {

struct PrivacyDouble {
    bool trusted = false;
    IOHIDAccessType listening = kIOHIDAccessTypeUnknown;
    int looks = 0;  // calls that show nothing to the player
};

PrivacyDouble& privacyDouble();

}  // namespace macdouble
