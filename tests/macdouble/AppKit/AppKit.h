#pragma once
// What the adapters use of the system's desktop library, as its public documentation declares it. The build makes the
// header of each class from it.

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

@class NSButton, NSImage, NSMenu, NSMenuItem, NSWindow;

typedef NSString* NSImageName;
typedef NSUInteger NSEventMask;
typedef NSUInteger NSEventModifierFlags;
typedef NSInteger NSWindowLevel;

enum NSApplicationActivationPolicy : NSInteger { NSApplicationActivationPolicyAccessory = 1 };
enum NSEventType : NSUInteger { NSEventTypeKeyDown = 10, NSEventTypeKeyUp = 11, NSEventTypeFlagsChanged = 12 };
enum : NSUInteger {
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20,
};
enum NSAutoresizingMaskOptions : NSUInteger { NSViewWidthSizable = 2, NSViewHeightSizable = 16 };
enum NSImageScaling : NSUInteger { NSImageScaleProportionallyDown = 0, NSImageScaleNone = 2 };
typedef NSUInteger NSWindowStyleMask;
enum : NSUInteger {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskResizable = 1 << 3,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};
typedef NSUInteger NSWindowCollectionBehavior;
enum : NSUInteger {
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};
enum NSWindowTitleVisibility : NSInteger { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };
enum NSWindowButton : NSUInteger { NSWindowCloseButton, NSWindowMiniaturizeButton, NSWindowZoomButton };

static const CGFloat NSSquareStatusItemLength = -2.0;
extern NSString* const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

@interface NSApplication : NSObject
+ (NSApplication*)sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)hide:(id)sender;
- (void)unhideWithoutActivation;
@property(readonly, getter=isActive) BOOL active;
@end

@interface NSRunningApplication : NSObject {
    NSString* bundleIdentifier_;
}
@property(readonly, copy) NSString* bundleIdentifier;
@property(readonly) int processIdentifier;
@end

@interface NSWorkspace : NSObject {
    NSRunningApplication* frontmostApplication_;
}
+ (NSWorkspace*)sharedWorkspace;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@property(readonly) NSNotificationCenter* notificationCenter;
@property(readonly, retain) NSRunningApplication* frontmostApplication;
@end

@interface NSScreen : NSObject {
    NSRect frame_;
}
+ (NSArray*)screens;
+ (NSScreen*)mainScreen;
@property(readonly) NSRect frame;
@end

@interface NSEvent : NSObject {
    CGEventRef event_;
    NSEventType type_;
    unsigned short keyCode_;
    NSEventModifierFlags modifierFlags_;
}
+ (NSEvent*)eventWithCGEvent:(CGEventRef)cgEvent;
+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block;
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))block;
+ (void)removeMonitor:(id)eventMonitor;
- (NSString*)charactersByApplyingModifiers:(NSEventModifierFlags)modifiers;
@property(readonly) NSEventType type;
@property(readonly) unsigned short keyCode;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly, copy) NSString* characters;
@property(readonly) CGEventRef CGEvent;
@end

@interface NSColor : NSObject {
    CGFloat alphaComponent_;
}
+ (NSColor*)blackColor;
+ (NSColor*)clearColor;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
@property(readonly) CGFloat alphaComponent;
@end

@interface NSColorSpace : NSObject
+ (NSColorSpace*)genericRGBColorSpace;
@end

@interface NSGradient : NSObject
- (instancetype)initWithColors:(NSArray*)colorArray
                   atLocations:(const CGFloat*)locations
                    colorSpace:(NSColorSpace*)colorSpace;
- (void)drawInRect:(NSRect)rect angle:(CGFloat)angle;
@end

@interface NSImage : NSObject {
    BOOL template_;
}
+ (NSImage*)imageNamed:(NSImageName)name;
- (void)setTemplate:(BOOL)isTemplate;
- (BOOL)isTemplate;
@end

@interface NSResponder : NSObject
- (BOOL)tryToPerform:(SEL)action with:(id)object;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
@end

@interface NSView : NSResponder {
    NSWindow* window_;
    NSRect frame_;
    NSMutableArray* subviews_;
    NSUInteger autoresizingMask_;
    BOOL hidden_;
}
- (instancetype)initWithFrame:(NSRect)frameRect;
- (void)addSubview:(NSView*)view;
- (NSView*)hitTest:(NSPoint)point;
- (BOOL)isDescendantOf:(NSView*)view;
@property(readonly, assign) NSWindow* window;
@property(readonly) BOOL mouseDownCanMoveWindow;
@property NSRect frame;
@property(readonly) NSRect bounds;
@property(readonly, copy) NSArray* subviews;
@property NSUInteger autoresizingMask;
@property(getter=isHidden) BOOL hidden;
@end

@interface NSButton : NSView {
    NSString* title_;
    NSImage* image_;
    NSImageScaling imageScaling_;
}
@property(copy) NSString* title;
@property(retain) NSImage* image;
@property NSImageScaling imageScaling;
@end

@interface NSStatusBarButton : NSButton
@end

@interface NSWindow : NSResponder {
    NSMutableArray* buttons_;
    NSColor* backgroundColor_;
    NSWindowStyleMask styleMask_;
    NSWindowCollectionBehavior collectionBehavior_;
    NSWindowTitleVisibility titleVisibility_;
    NSWindowLevel level_;
    NSRect frame_;
    NSString* frameName_;
    NSResponder* firstResponder_;
    BOOL titlebarAppearsTransparent_, opaque_, hasShadow_, hidesOnDeactivate_, movableByWindowBackground_, centered_;
}
- (NSButton*)standardWindowButton:(NSWindowButton)b;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
- (BOOL)setFrameUsingName:(NSString*)name force:(BOOL)force;
- (BOOL)setFrameAutosaveName:(NSString*)name;
- (void)center;
- (void)makeKeyAndOrderFront:(id)sender;
@property(readonly) NSRect frame;
@property(readonly) NSResponder* firstResponder;
@property(retain) NSColor* backgroundColor;
@property NSWindowStyleMask styleMask;
@property NSWindowCollectionBehavior collectionBehavior;
@property NSWindowTitleVisibility titleVisibility;
@property NSWindowLevel level;
@property BOOL titlebarAppearsTransparent, hasShadow, hidesOnDeactivate;
@property(getter=isOpaque) BOOL opaque;
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@end

@interface NSPanel : NSWindow
@end

@interface NSMenu : NSObject {
    NSString* title_;
    NSMutableArray* items_;
    BOOL autoenablesItems_;
}
- (instancetype)initWithTitle:(NSString*)title;
- (void)addItem:(NSMenuItem*)newItem;
- (NSMenuItem*)itemAtIndex:(NSInteger)index;
@property(copy) NSString* title;
@property(readonly) NSInteger numberOfItems;
@property BOOL autoenablesItems;
@end

@interface NSMenuItem : NSObject {
    NSString* title_;
    SEL action_;
    id target_, representedObject_;
    NSMenu* submenu_;
    BOOL enabled_, separatorItem_;
}
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string action:(SEL)selector keyEquivalent:(NSString*)charCode;
@property(copy) NSString* title;
@property SEL action;
@property(assign) id target;
@property(retain) id representedObject;
@property(retain) NSMenu* submenu;
@property(getter=isEnabled) BOOL enabled;
@property(readonly, getter=isSeparatorItem) BOOL separatorItem;
@end

@interface NSStatusItem : NSObject {
    NSStatusBarButton* button_;
    NSMenu* menu_;
    CGFloat length_;
}
@property CGFloat length;
@property(retain) NSMenu* menu;
@property(readonly, retain) NSStatusBarButton* button;
@end

@interface NSStatusBar : NSObject
+ (NSStatusBar*)systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end
