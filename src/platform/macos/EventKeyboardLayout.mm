#include "platform/macos/EventKeyboardLayout.h"

#import <AppKit/NSEvent.h>

#include "platform/macos/FoundationText.h"

namespace vantor {

std::optional<KeyboardLayout::Translation> EventKeyboardLayout::translate(KeyCode keyCode, ModifierFlags flags) const {
    if (keyCode >= keyCodeCount) return std::nullopt;
    // The conversions of a whole layout would otherwise stay until the next turn of the event loop.
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    std::optional<Translation> translation;
    NSEvent* const event = [NSEvent eventWithCGEvent:static_cast<CGEventRef>(events_.event(keyCode, flags))];
    if (event && [event type] == NSEventTypeKeyDown) {
        std::string characters = plainText([event characters]);
        if (!characters.empty())
            translation = {std::move(characters), static_cast<ModifierFlags>([event modifierFlags])};
    }
    [pool release];
    return translation;
}

}  // namespace vantor
