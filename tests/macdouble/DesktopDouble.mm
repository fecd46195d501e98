#include "DesktopDouble.h"

#import <AppKit/NSApplication.h>
#import <AppKit/NSScreen.h>
#import <AppKit/NSWorkspace.h>

#include <utility>

#include "ServiceCalls.h"

@interface NSRunningApplication ()
- (id)initWithIdentifier:(NSString*)identifier;
@end

@interface NSScreen ()
- (id)initWithFrame:(NSRect)frame;
@end

@interface DoubleBundle : NSBundle {
    NSDictionary* info_;
}
- (id)initWithInfo:(NSDictionary*)info;
@end

namespace {

struct Desktop {
    bool reducesMotion = false;
    std::string bundle;
    DoubleBundle* found = nil;
    NSMutableArray* screens = [[NSMutableArray alloc] init];
    NSScreen* main = nil;
};

Desktop& desktop() {
    static Desktop one;
    return one;
}

void note(const std::string& call, NSInteger value) {
    macdouble::serviceCalls().add(call + " " + std::to_string(value));
}

}  // namespace

@implementation NSRunningApplication
@synthesize bundleIdentifier = bundleIdentifier_;
- (id)initWithIdentifier:(NSString*)identifier {
    self = [super init];
    if (self) bundleIdentifier_ = [identifier copy];
    return self;
}
- (void)dealloc {
    [bundleIdentifier_ release];
    [super dealloc];
}
@end

NSString* const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification =
    @"NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification";

@implementation NSWorkspace
@synthesize frontmostApplication = frontmostApplication_;
@synthesize notificationCenter = notificationCenter_;
- (id)init {
    self = [super init];
    if (self) notificationCenter_ = [[NSNotificationCenter alloc] init];
    return self;
}
- (BOOL)accessibilityDisplayShouldReduceMotion {
    return desktop().reducesMotion;
}
+ (NSWorkspace*)sharedWorkspace {
    static NSWorkspace* const one = [[NSWorkspace alloc] init];
    return one;
}
- (void)setFrontmostApplication:(NSRunningApplication*)application {
    [frontmostApplication_ autorelease];
    frontmostApplication_ = [application retain];
}
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(void*)context {
    note("observe " + std::string([keyPath UTF8String]), static_cast<NSInteger>(options));
    [super addObserver:observer forKeyPath:keyPath options:options context:context];
}
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath {
    macdouble::serviceCalls().add("stop observing " + std::string([keyPath UTF8String]));
    [super removeObserver:observer forKeyPath:keyPath];
}
@end

@implementation NSApplication
@synthesize mainMenu = mainMenu_;
+ (NSApplication*)sharedApplication {
    static NSApplication* const one = [[NSApplication alloc] init];
    return one;
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy {
    note("activation policy", activationPolicy);
    return YES;
}
- (void)hide:(id)sender {
    macdouble::serviceCalls().add(sender ? "hide for a sender" : "hide");
}
- (void)unhideWithoutActivation {
    macdouble::serviceCalls().add("unhide without activation");
}
@end

@implementation DoubleBundle
- (id)initWithInfo:(NSDictionary*)info {
    self = [super init];
    if (self) info_ = [info retain];
    return self;
}
- (NSDictionary*)infoDictionary {
    return info_;
}
@end

// In place of the real look for bundles, which would find those of this machine.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
@implementation NSBundle (OfTheTest)
+ (NSBundle*)bundleWithIdentifier:(NSString*)identifier {
    return desktop().bundle == [identifier UTF8String] ? desktop().found : nil;
}
@end
#pragma clang diagnostic pop

@implementation NSScreen
@synthesize frame = frame_;
- (id)initWithFrame:(NSRect)frame {
    self = [super init];
    if (self) frame_ = frame;
    return self;
}
+ (NSArray*)screens {
    return [[desktop().screens copy] autorelease];
}
+ (NSScreen*)mainScreen {
    return desktop().main;
}
@end

@implementation NSWindow
@synthesize styleMask = styleMask_;
- (id)init {
    self = [super init];
    if (self) buttons_ = [[NSMutableDictionary alloc] init];
    return self;
}
- (void)dealloc {
    [buttons_ release];
    [super dealloc];
}
- (NSButton*)standardWindowButton:(NSWindowButton)b {
    NSNumber* const number = [NSNumber numberWithUnsignedInteger:b];
    if (![buttons_ objectForKey:number]) {
        note("button", static_cast<NSInteger>(b));
        [buttons_ setObject:[[[NSButton alloc] initWithFrame:NSZeroRect] autorelease] forKey:number];
    }
    return [buttons_ objectForKey:number];
}
- (void)setTitleVisibility:(NSWindowTitleVisibility)titleVisibility {
    note("title visibility", titleVisibility);
}
- (void)setTitlebarAppearsTransparent:(BOOL)titlebarAppearsTransparent {
    note("transparent title bar", titlebarAppearsTransparent);
}
- (void)setOpaque:(BOOL)opaque {
    note("opaque", opaque);
}
- (void)setBackgroundColor:(NSColor*)backgroundColor {
    note("background of alpha", static_cast<NSInteger>([backgroundColor alphaComponent] * 100));
}
- (void)setHasShadow:(BOOL)hasShadow {
    note("shadow", hasShadow);
}
- (void)setCollectionBehavior:(NSWindowCollectionBehavior)collectionBehavior {
    note("collection behaviour", static_cast<NSInteger>(collectionBehavior));
}
- (void)setLevel:(NSWindowLevel)level {
    note("level", level);
}
- (void)setHidesOnDeactivate:(BOOL)hidesOnDeactivate {
    note("hides on deactivation", hidesOnDeactivate);
}
- (void)setMovableByWindowBackground:(BOOL)movableByWindowBackground {
    note("movable by background", movableByWindowBackground);
}
- (BOOL)setFrameAutosaveName:(NSString*)name {
    macdouble::serviceCalls().add("frame autosave name " + std::string([name UTF8String]));
    // A name belongs to one window.
    return ![name isEqual:@"taken"];
}
- (void)center {
    macdouble::serviceCalls().add("center");
}
- (void)makeKeyAndOrderFront:(id)sender {
    macdouble::serviceCalls().add(sender ? "key and front for a sender" : "key and front");
}
@end

@implementation NSPanel
@end

@implementation DoubleWindow
- (void)_setPreventsActivation:(BOOL)preventsActivation {
    note("prevents activation", preventsActivation);
}
@end

@implementation DoublePanel
@end

@implementation NSView (InWindow)
- (NSWindow*)window {
    return nil;
}
// A view that is not opaque.
- (BOOL)mouseDownCanMoveWindow {
    return YES;
}
@end

@implementation DoubleView
- (id)initInWindow:(NSWindow*)window {
    self = [super initWithFrame:NSZeroRect];
    if (self) window_ = [window retain];
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

@implementation ToolkitView
@end

@implementation NSButton (OfWindow)
- (void)setHidden:(BOOL)hidden {
    note("hidden", hidden);
}
@end

@implementation NSColor (Clear)
+ (NSColor*)clearColor {
    return [[NSColor blackColor] colorWithAlphaComponent:0];
}
@end

namespace macdouble {

void setFrontmost(std::optional<std::string> identifier) {
    NSRunningApplication* application = nil;
    if (identifier) {
        NSString* const text = identifier->empty() ? nil : [NSString stringWithUTF8String:identifier->c_str()];
        application = [[[NSRunningApplication alloc] initWithIdentifier:text] autorelease];
    }
    // By the setter that observation knows of.
    [[NSWorkspace sharedWorkspace] setValue:application forKey:@"frontmostApplication"];
}

void setBundle(std::string identifier, id name) {
    [desktop().found release];
    desktop().found = nil;
    desktop().bundle = std::move(identifier);
    NSMutableDictionary* const info = [NSMutableDictionary dictionary];
    if (name) [info setObject:name forKey:@"CFBundleName"];
    desktop().found = [[DoubleBundle alloc] initWithInfo:info];
}

void setReducesMotion(bool reduces) {
    desktop().reducesMotion = reduces;
    [[[NSWorkspace sharedWorkspace] notificationCenter]
        postNotificationName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                      object:[NSWorkspace sharedWorkspace]];
}

void setScreens(std::vector<NSRect> frames, std::optional<std::size_t> main) {
    [desktop().screens removeAllObjects];
    for (const NSRect& frame : frames)
        [desktop().screens addObject:[[[NSScreen alloc] initWithFrame:frame] autorelease]];
    desktop().main = main ? [desktop().screens objectAtIndex:*main] : nil;
}

}  // namespace macdouble
