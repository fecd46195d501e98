#import "platform/macos/EditableWebView.h"

#import <AppKit/NSEvent.h>
#import <AppKit/NSWindow.h>

namespace {

// Null for a key without a meaning here.
SEL editAction(NSEvent* event) {
    constexpr NSEventModifierFlags modifiers =
        NSEventModifierFlagShift | NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;
    if (([event modifierFlags] & modifiers) != NSEventModifierFlagCommand) return nullptr;
    // With Command held, a layout of other letters gives Latin ones too.
    NSString* const key = [[event characters] lowercaseString];
    if ([key isEqual:@"x"]) return @selector(cut:);
    if ([key isEqual:@"c"]) return @selector(copy:);
    if ([key isEqual:@"v"]) return @selector(paste:);
    return [key isEqual:@"a"] ? @selector(selectAll:) : nullptr;
}

}  // namespace

@implementation VantorEditableWebView
// Asked of every view in the window before the key goes to the one that has the keyboard.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
    const id keyboard = [[self window] firstResponder];
    const bool ours = [keyboard isKindOfClass:[NSView class]] && [keyboard isDescendantOf:self];
    const SEL action = ours ? editAction(event) : nullptr;
    if (action && [self tryToPerform:action with:self]) return YES;
    return [super performKeyEquivalent:event];
}
@end
