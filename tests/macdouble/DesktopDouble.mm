// Applications, screens, windows and views.

#import <ApplicationServices/ApplicationServices.h>

#include <unistd.h>

#include "Mac.h"

using macdouble::mac;
using macdouble::note;

NSString* const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification = @"display options changed";

@implementation NSRunningApplication
@synthesize bundleIdentifier = bundleIdentifier_;
OWNS(bundleIdentifier_)
- (int)processIdentifier {
    return [bundleIdentifier_ isEqual:@"orvendel.Vantor"] ? getpid() : int([bundleIdentifier_ hash] % 1000) + 2;
}
@end

@implementation NSWorkspace
@synthesize frontmostApplication = frontmostApplication_;
+ (NSWorkspace*)sharedWorkspace {
    macdouble::needsMainThread();
    static NSWorkspace* const one = [[NSWorkspace alloc] init];
    return one;
}
- (NSNotificationCenter*)notificationCenter {
    static NSNotificationCenter* const one = [[NSNotificationCenter alloc] init];
    return one;
}
- (BOOL)accessibilityDisplayShouldReduceMotion {
    return mac().reducesMotion;
}
@end

@implementation NSApplication
+ (NSApplication*)sharedApplication {
    macdouble::needsMainThread();
    static NSApplication* const one = [[NSApplication alloc] init];
    return one;
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy {
    mac().activationPolicy = activationPolicy;
    return YES;
}
- (BOOL)isActive {
    return mac().active;
}
- (void)hide:(id)sender {
    (void)sender;
    mac().hidden = true;
    mac().active = mac().active && mac().looksUntilHidden > 0;
}
- (void)unhideWithoutActivation {
    mac().hidden = false;
}
@end

@interface ElementDouble : NSObject {
@public
    pid_t process;
}
@end
@implementation ElementDouble
@end

AXUIElementRef AXUIElementCreateSystemWide() { return (AXUIElementRef)[[ElementDouble alloc] init]; }
AXError AXUIElementCopyAttributeValue(AXUIElementRef, CFStringRef attribute, CFTypeRef* value) {
    if (!mac().trusted || ![(NSString*)attribute isEqual:@"AXFocusedApplication"]) return kAXErrorAPIDisabled;
    mac().active = mac().active && --mac().looksUntilHidden > 0;
    ElementDouble* const application = [[ElementDouble alloc] init];
    application->process = mac().active ? getpid() : 1;
    *value = application;
    return kAXErrorSuccess;
}
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
    *pid = ((ElementDouble*)element)->process;
    return kAXErrorSuccess;
}
AXError AXUIElementSetMessagingTimeout(AXUIElementRef, float) { return kAXErrorSuccess; }

@interface BundleDouble : NSBundle
@end

@implementation BundleDouble
- (NSDictionary*)infoDictionary {
    return [NSDictionary dictionaryWithObjectsAndKeys:mac().bundleName, @"CFBundleName", nil];
}
@end

// In place of the real look for bundles, which would find those of this machine.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
@implementation NSBundle (OfTheTest)
+ (NSBundle*)bundleWithIdentifier:(NSString*)identifier {
    return mac().bundle == [identifier UTF8String] ? [[[BundleDouble alloc] init] autorelease] : nil;
}
@end
#pragma clang diagnostic pop

@implementation NSScreen
- (NSRect)frame {
    return frame_;
}
- (BOOL)isEqual:(id)other {
    return NSEqualRects(frame_, [other frame]);
}
+ (NSArray*)screens {
    NSMutableArray* const all = [NSMutableArray array];
    for (const NSRect& frame : mac().screens) {
        NSScreen* const screen = [[[NSScreen alloc] init] autorelease];
        screen->frame_ = frame;
        [all addObject:screen];
    }
    return all;
}
+ (NSScreen*)mainScreen {
    return mac().mainScreen ? [[NSScreen screens] objectAtIndex:*mac().mainScreen] : nil;
}
@end

@implementation NSResponder
- (BOOL)tryToPerform:(SEL)action with:(id)object {
    (void)action, (void)object;
    return NO;
}
- (BOOL)performKeyEquivalent:(NSEvent*)event {
    (void)event;
    return NO;
}
@end

@implementation NSWindow
@synthesize backgroundColor = backgroundColor_, styleMask = styleMask_, collectionBehavior = collectionBehavior_,
            titleVisibility = titleVisibility_, level = level_, frame = frame_, firstResponder = firstResponder_,
            titlebarAppearsTransparent = titlebarAppearsTransparent_, opaque = opaque_, hasShadow = hasShadow_,
            hidesOnDeactivate = hidesOnDeactivate_, movableByWindowBackground = movableByWindowBackground_,
            centered = centered_;
- (id)init {
    macdouble::needsMainThread();
    self = [super init];
    buttons_ = [[NSMutableArray alloc] init];
    for (int button = 0; button < 3; ++button) [buttons_ addObject:[[[NSButton alloc] init] autorelease]];
    backgroundColor_ = [[NSColor blackColor] retain];
    opaque_ = hasShadow_ = hidesOnDeactivate_ = YES;
    return self;
}
OWNS(buttons_, backgroundColor_, frameName_)
- (NSButton*)standardWindowButton:(NSWindowButton)b {
    return [buttons_ objectAtIndex:b];
}
// Whoever has a name keeps each change of its frame.
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag {
    (void)flag;
    frame_ = frameRect;
    if (frameName_) [mac().frames setObject:[NSValue valueWithRect:frame_] forKey:frameName_];
}
// Unforced, a window that cannot be resized takes the place alone, which is that of the bottom.
- (BOOL)setFrameUsingName:(NSString*)name force:(BOOL)force {
    NSValue* const kept = [mac().frames objectForKey:name];
    if (!kept) return NO;
    NSRect frame = [kept rectValue];
    if (!force && (styleMask_ & NSWindowStyleMaskResizable) == 0) frame.size = frame_.size;
    [self setFrame:frame display:YES];
    return YES;
}
- (BOOL)setFrameAutosaveName:(NSString*)name {
    if ([name isEqual:@"taken"]) return NO;  // a name belongs to one window
    [frameName_ autorelease];
    frameName_ = [name copy];
    (void)[self setFrameUsingName:name force:NO];
    return YES;
}
- (void)center {
    centered_ = YES;
}
- (void)makeKeyAndOrderFront:(id)sender {
    (void)sender;
    note("key and front");
}
@end

@implementation NSPanel
@end

@implementation ActivationWindow
@synthesize preventsActivation = preventsActivation_;
- (void)_setPreventsActivation:(BOOL)preventsActivation {
    preventsActivation_ = preventsActivation;
}
@end

@implementation NSView
@synthesize frame = frame_, subviews = subviews_, autoresizingMask = autoresizingMask_, hidden = hidden_,
            window = window_;
- (instancetype)initWithFrame:(NSRect)frameRect {
    macdouble::needsMainThread();
    self = [self init];
    frame_ = frameRect;
    subviews_ = [[NSMutableArray alloc] init];
    return self;
}
OWNS(subviews_)
- (NSRect)bounds {
    return NSMakeRect(0, 0, frame_.size.width, frame_.size.height);
}
// As of a view that is not opaque.
- (BOOL)mouseDownCanMoveWindow {
    return YES;
}
- (void)addSubview:(NSView*)view {
    [subviews_ addObject:view];
}
- (NSView*)hitTest:(NSPoint)point {
    return NSPointInRect(point, frame_) ? self : nil;
}
- (BOOL)isDescendantOf:(NSView*)view {
    return self == view || [[view subviews] containsObject:self];
}
@end

@implementation ToolkitView
@end

@implementation NSColor
@synthesize alphaComponent = alphaComponent_;
+ (NSColor*)blackColor {
    return [[NSColor clearColor] colorWithAlphaComponent:1];
}
+ (NSColor*)clearColor {
    return [[[NSColor alloc] init] autorelease];
}
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha {
    NSColor* const color = [NSColor clearColor];
    color->alphaComponent_ = alpha;
    return color;
}
@end

@implementation NSColorSpace
+ (NSColorSpace*)genericRGBColorSpace {
    return [[[NSColorSpace alloc] init] autorelease];
}
@end

// Draws nothing: what a fade looks like only a Mac can show.
@implementation NSGradient
- (instancetype)initWithColors:(NSArray*)colorArray
                   atLocations:(const CGFloat*)locations
                    colorSpace:(NSColorSpace*)colorSpace {
    (void)colorArray, (void)locations, (void)colorSpace;
    return [self init];
}
- (void)drawInRect:(NSRect)rect angle:(CGFloat)angle {
    (void)rect, (void)angle;
}
@end

namespace macdouble {

void Mac::setFrontmost(std::optional<std::string> identifier) {
    NSRunningApplication* const application = identifier ? [[[NSRunningApplication alloc] init] autorelease] : nil;
    if (identifier && !identifier->empty())
        [application setBundleIdentifier:[NSString stringWithUTF8String:identifier->c_str()]];
    [[NSWorkspace sharedWorkspace] setFrontmostApplication:application];
}

void Mac::setReducesMotion(bool reduces) {
    reducesMotion = reduces;
    [[[NSWorkspace sharedWorkspace] notificationCenter]
        postNotificationName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                      object:[NSWorkspace sharedWorkspace]];
}

}  // namespace macdouble
