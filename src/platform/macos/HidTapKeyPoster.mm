#include "platform/macos/HidTapKeyPoster.h"

#import <CoreGraphics/CoreGraphics.h>

namespace vantor {

PostVerdict HidTapKeyPoster::post(const PostedKey& key) {
    if (key.keyCode >= keyCodeCount) return PostVerdict::noSuchKey;
    const auto event = static_cast<CGEventRef>(events_.event(key.keyCode, key.flags));
    CGEventSetType(event, key.down ? kCGEventKeyDown : kCGEventKeyUp);
    CGEventPost(kCGHIDEventTap, event);
    return PostVerdict::posted;
}

}  // namespace vantor
