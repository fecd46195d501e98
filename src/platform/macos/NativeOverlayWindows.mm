#include "platform/macos/NativeOverlayWindows.h"

#import <AppKit/NSButton.h>
#import <AppKit/NSColor.h>
#import <AppKit/NSPanel.h>
#import <AppKit/NSView.h>
#import <AppKit/NSWindow.h>

#import <objc/runtime.h>

#include <initializer_list>

#include "platform/macos/FoundationText.h"

// Known to the system's window only. What it does: a click into the window leaves the active application active.
@interface NSWindow (VantorPreventsActivation)
- (void)_setPreventsActivation:(BOOL)preventsActivation;
@end

// Keeps a window's style, which is the observation's context. The toolkit writes the whole style anew with each change
// of a window's flags, and gives even a frameless one edges to be resized by. The class itself observes: it keeps
// nothing, and it outlives every window.
@interface VantorKeptStyle : NSObject
@end

@implementation VantorKeptStyle
+ (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
    (void)keyPath, (void)change;
    NSWindow* const window = object;
    const auto kept = (NSWindowStyleMask)context;
    if ([window styleMask] != kept) [window setStyleMask:kept];
}
@end

namespace vantor {

namespace {

constexpr NSInteger raisedLevel = 1000;
// Without the second a window is not seen over a game in a full-screen Space of its own.
const NSWindowCollectionBehavior overTheGame =
    NSWindowCollectionBehaviorMoveToActiveSpace | NSWindowCollectionBehaviorFullScreenAuxiliary;

NSWindow* windowOf(NativeWindow native) { return [(NSView*)native window]; }

BOOL staysUnderThePointer(id, SEL) { return NO; }

// Movable by its background, as the system understands it: by every view that does not refuse. The toolkit has one view
// for all that is drawn in a window, and one that is not opaque does not refuse, so each slider would drag the window.
// Ours refuses; what of it is background the window itself knows, and is moved by that.
void makeMovableByBackground(NSWindow* window, NSView* view) {
    const char types[] = { *@encode(BOOL), *@encode(id), *@encode(SEL), '\0' };
    // A method is stored as one of another type, and called as what it is.
    const IMP method = reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(staysUnderThePointer));
    class_addMethod([view class], @selector(mouseDownCanMoveWindow), method, types);
    [window setMovableByWindowBackground:YES];
}

// The main window, with none of what a title and its buttons would show.
void styleMain(NSWindow* window, NSView* view) {
    [window setTitleVisibility:NSWindowTitleHidden];
    [window setTitlebarAppearsTransparent:YES];
    [window setOpaque:NO];
    [window setBackgroundColor:[NSColor clearColor]];
    for (const NSWindowButton button : {NSWindowCloseButton, NSWindowZoomButton, NSWindowMiniaturizeButton})
        [[window standardWindowButton:button] setHidden:YES];
    makeMovableByBackground(window, view);
    [window setHasShadow:NO];
    [window setCollectionBehavior:overTheGame];
}

void styleSeamless(NSWindow* window) {
    [window setBackgroundColor:[NSColor clearColor]];
    [window setCollectionBehavior:overTheGame];
}

// The window's style where the system has no such call. A panel that becomes non-activating after it was made may be so
// in name only: nothing better is to be had of a window that the toolkit makes.
NSWindowStyleMask preventActivation(NSWindow* window) {
    if ([window respondsToSelector:@selector(_setPreventsActivation:)]) {
        [window _setPreventsActivation:YES];
        return NSWindowStyleMaskBorderless;
    }
    return [window isKindOfClass:[NSPanel class]] ? NSWindowStyleMaskNonactivatingPanel : NSWindowStyleMaskBorderless;
}

void keepStyle(NSWindow* window, NSWindowStyleMask style) {
    [window addObserver:(NSObject*)[VantorKeptStyle class]
             forKeyPath:NSStringFromSelector(@selector(styleMask))
                options:NSKeyValueObservingOptionInitial
                context:(void*)style];
}

}  // namespace

void NativeOverlayWindows::prepare(NativeWindow native, WindowNature nature) {
    NSView* const view = (NSView*)native;
    NSWindow* const window = windowOf(native);
    if (nature == WindowNature::overlay)
        styleMain(window, view);
    else
        styleSeamless(window);
    NSWindowStyleMask style = NSWindowStyleMaskBorderless;
    if (nature == WindowNature::nonActivating) {
        style = preventActivation(window);
        [window center];
        makeMovableByBackground(window, view);
    }
    if (nature == WindowNature::popup || nature == WindowNature::raisedPopup) [window center];
    if (nature == WindowNature::raisedPopup) [window setLevel:raisedLevel];
    if (nature != WindowNature::overlay) keepStyle(window, style);
    // The toolkit's tool windows go when their application is not the active one, and here the game is.
    [window setHidesOnDeactivate:NO];
}

bool NativeOverlayWindows::keepFrame(NativeWindow native, const std::string& name) {
    NSWindow* const window = windowOf(native);
    NSString* const key = textOrEmpty(name);
    const NSSize size = [window frame].size;
    // What was kept is read before the window has the name: each change of its frame is kept from then on.
    // Forced, because a window without edges to be resized by would take only the kept place of its bottom.
    if ([window setFrameUsingName:key force:YES]) {
        // Kept while the list was long; the list grows downwards from its top edge.
        const NSRect kept = [window frame];
        [window setFrame:NSMakeRect(NSMinX(kept), NSMaxY(kept) - size.height, size.width, size.height) display:NO];
    }
    const NSRect placed = [window frame];
    // Refused where another window has the name already.
    const bool keeps = [window setFrameAutosaveName:key];
    // The name alone brings the kept frame back in the system's other form, by its bottom.
    [window setFrame:placed display:NO];
    return keeps;
}

void NativeOverlayWindows::orderFront(NativeWindow native) { [windowOf(native) makeKeyAndOrderFront:nil]; }

}  // namespace vantor
