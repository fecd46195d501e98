#include "platform/macos/HidTapKeyPoster.h"

#import <CoreGraphics/CoreGraphics.h>

#include <cstdio>

namespace vantor {

std::unique_ptr<KeyPoster::Typing> HidTapKeyPoster::beginTyping() {
    if (workspace_.keptFocus()) std::fputs("vantor: the game did not get the focus back: nothing was typed\n", stderr);
    return nullptr;
}

PostVerdict HidTapKeyPoster::post(const PostedKey& key) {
    if (workspace_.keptFocus()) return PostVerdict::lost;
    if (key.keyCode >= keyCodeCount) return PostVerdict::noSuchKey;
    const auto event = static_cast<CGEventRef>(events_.event(key.keyCode, key.flags));
    CGEventSetType(event, key.down ? kCGEventKeyDown : kCGEventKeyUp);
    CGEventPost(kCGHIDEventTap, event);
    return PostVerdict::posted;
}

}  // namespace vantor
