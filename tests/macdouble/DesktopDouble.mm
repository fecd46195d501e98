// Applications, screens, windows and views.

#include "Mac.h"

using macdouble::mac;
using macdouble::note;

NSString* const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification = @"display options changed";

@implementation NSRunningApplication
@synthesize bundleIdentifier = bundleIdentifier_;
- (void)dealloc {
    [bundleIdentifier_ release];
    [super dealloc];
}
@end

@implementation NSWorkspace
@synthesize frontmostApplication = frontmostApplication_;
+ (NSWorkspace*)sharedWorkspace {
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
@synthesize mainMenu = mainMenu_;
+ (NSApplication*)sharedApplication {
    static NSApplication* const one = [[NSApplication alloc] init];
    return one;
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy {
    mac().activationPolicy = activationPolicy;
    return YES;
}
- (void)hide:(id)sender {
    (void)sender;
    note("hide");
}
- (void)unhideWithoutActivation {
    note("unhide without activation");
}
@end

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

@implementation NSWindow
@synthesize backgroundColor = backgroundColor_, styleMask = styleMask_, collectionBehavior = collectionBehavior_,
            titleVisibility = titleVisibility_, level = level_,
            titlebarAppearsTransparent = titlebarAppearsTransparent_, opaque = opaque_, hasShadow = hasShadow_,
            hidesOnDeactivate = hidesOnDeactivate_, movableByWindowBackground = movableByWindowBackground_,
            centered = centered_;
- (id)init {
    self = [super init];
    buttons_ = [[NSMutableArray alloc] init];
    for (int button = 0; button < 3; ++button) [buttons_ addObject:[[[NSButton alloc] init] autorelease]];
    backgroundColor_ = [[NSColor blackColor] retain];
    opaque_ = hasShadow_ = hidesOnDeactivate_ = YES;
    return self;
}
- (void)dealloc {
    [buttons_ release];
    [backgroundColor_ release];
    [super dealloc];
}
- (NSButton*)standardWindowButton:(NSWindowButton)b {
    return [buttons_ objectAtIndex:b];
}
- (BOOL)setFrameAutosaveName:(NSString*)name {
    note(std::string("frame kept as ") + [name UTF8String]);
    return ![name isEqual:@"taken"];  // a name belongs to one window
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
@synthesize subviews = subviews_, autoresizingMask = autoresizingMask_, hidden = hidden_;
- (instancetype)initWithFrame:(NSRect)frameRect {
    self = [self init];
    frame_ = frameRect;
    subviews_ = [[NSMutableArray alloc] init];
    return self;
}
- (void)dealloc {
    [subviews_ release];
    [super dealloc];
}
- (NSRect)frame {
    return frame_;
}
- (void)setFrame:(NSRect)frame {
    for (NSView* each in subviews_) {
        NSRect next = [each frame];
        if ([each autoresizingMask] & NSViewWidthSizable) next.size.width += NSWidth(frame) - NSWidth(frame_);
        if ([each autoresizingMask] & NSViewHeightSizable) next.size.height += NSHeight(frame) - NSHeight(frame_);
        [each setFrame:next];
    }
    frame_ = frame;
}
- (NSRect)bounds {
    return NSMakeRect(0, 0, frame_.size.width, frame_.size.height);
}
- (NSWindow*)window {
    return nil;
}
// As of a view that is not opaque.
- (BOOL)mouseDownCanMoveWindow {
    return YES;
}
- (void)addSubview:(NSView*)view {
    [subviews_ addObject:view];
}
- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
}
- (NSView*)hitTest:(NSPoint)point {
    return NSPointInRect(point, frame_) ? self : nil;
}
@end

@implementation ToolkitView
- (id)initInWindow:(NSWindow*)window {
    self = [super initWithFrame:NSZeroRect];
    window_ = [window retain];
    return self;
}
- (void)dealloc {
    [window_ release];
    [super dealloc];
}
- (NSWindow*)window {
    return window_;
}
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

static NSPoint lookedAt;
static double found;

@implementation NSGradient
- (instancetype)initWithColors:(NSArray*)colorArray
                   atLocations:(const CGFloat*)locations
                    colorSpace:(NSColorSpace*)colorSpace {
    (void)locations, (void)colorSpace;
    self = [super init];
    colors_ = [colorArray retain];
    return self;
}
- (void)dealloc {
    [colors_ release];
    [super dealloc];
}
// As if it went evenly from the first colour to the last.
- (void)drawInRect:(NSRect)rect angle:(CGFloat)angle {
    if (!NSPointInRect(lookedAt, rect)) return;
    const bool upwards = angle == 90 || angle == 270;
    double way = upwards ? (lookedAt.y - NSMinY(rect)) / NSHeight(rect) : (lookedAt.x - NSMinX(rect)) / NSWidth(rect);
    if (angle >= 180) way = 1 - way;
    found += [[colors_ objectAtIndex:0] alphaComponent] * (1 - way) + [[colors_ lastObject] alphaComponent] * way;
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

double Mac::darkness(NSView* view, NSPoint place) {
    lookedAt = place;
    found = 0;
    [view drawRect:[view bounds]];
    return found;
}

}  // namespace macdouble
