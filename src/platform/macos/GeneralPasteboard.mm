#include "platform/macos/GeneralPasteboard.h"

#import <AppKit/NSPasteboard.h>

#include "platform/macos/FoundationText.h"

namespace vantor {

std::string GeneralPasteboard::text() const {
    @autoreleasepool {
        return plainText([[NSPasteboard generalPasteboard] stringForType:NSPasteboardTypeString]);
    }
}

void GeneralPasteboard::setText(const std::string& text) {
    @autoreleasepool {
        NSString* const string = systemText(text);
        if (!string) return;
        NSPasteboard* const pasteboard = [NSPasteboard generalPasteboard];
        [pasteboard clearContents];
        // What the pasteboard refuses is not on it; the player sees that when pasting.
        (void)[pasteboard setString:string forType:NSPasteboardTypeString];
    }
}

}  // namespace vantor
