#include "platform/macos/NativeOverlayWindows.h"

#import <AppKit/NSButton.h>
#import <AppKit/NSColor.h>
#import <AppKit/NSPanel.h>
#import <AppKit/NSView.h>
#import <AppKit/NSWindow.h>

#include <initializer_list>

// Known to the system's window only. What it does: a click into the window leaves the active application active.
@interface NSWindow (VantorPreventsActivation)
- (void)_setPreventsActivation:(BOOL)preventsActivation;
@end

// Keeps a panel non-activating. The toolkit writes a window's whole style anew with each change of its flags. The class
// itself observes: it keeps nothing, and it outlives every window.
@interface VantorNonActivatingStyle : NSObject
@end

@implementation VantorNonActivatingStyle
+ (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
    (void)keyPath, (void)change, (void)context;
    NSPanel* const panel = object;
    const NSWindowStyleMask style = [panel styleMask];
    if (!(style & NSWindowStyleMaskNonactivatingPanel))
        [panel setStyleMask:style | NSWindowStyleMaskNonactivatingPanel];
}
@end

namespace vantor {

namespace {

constexpr NSInteger raisedLevel = 1000;

// The main window, with none of what a title and its buttons would show.
void dressMain(NSWindow* window) {
    [window setTitleVisibility:NSWindowTitleHidden];
    [window setTitlebarAppearsTransparent:YES];
    [window setOpaque:NO];
    [window setBackgroundColor:[NSColor clearColor]];
    for (const NSWindowButton button : {NSWindowCloseButton, NSWindowZoomButton, NSWindowMiniaturizeButton})
        [[window standardWindowButton:button] setHidden:YES];
    [window setHasShadow:NO];
    [window setCollectionBehavior:NSWindowCollectionBehaviorMoveToActiveSpace];
}

void dressSeamless(NSWindow* window) {
    [window setBackgroundColor:[NSColor clearColor]];
    [window setCollectionBehavior:NSWindowCollectionBehaviorMoveToActiveSpace];
}

void preventActivation(NSWindow* window) {
    if ([window respondsToSelector:@selector(_setPreventsActivation:)])
        [window _setPreventsActivation:YES];
    else if ([window isKindOfClass:[NSPanel class]])
        [window addObserver:(NSObject*)[VantorNonActivatingStyle class]
                 forKeyPath:NSStringFromSelector(@selector(styleMask))
                    options:NSKeyValueObservingOptionInitial
                    context:nullptr];
}

}  // namespace

void NativeOverlayWindows::prepare(NativeWindow native, WindowNature nature) {
    NSWindow* const window = [(NSView*)native window];
    if (nature == WindowNature::overlay)
        dressMain(window);
    else
        dressSeamless(window);
    if (nature == WindowNature::nonActivating) preventActivation(window);
    if (nature == WindowNature::raisedPopup) [window setLevel:raisedLevel];
    // The toolkit's tool windows go when their application is not the active one, and here the game is.
    [window setHidesOnDeactivate:NO];
}

}  // namespace vantor
