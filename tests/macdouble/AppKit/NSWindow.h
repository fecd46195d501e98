#pragma once
// What is used of the system's windows, as their public documentation declares them, with what other classes have for
// them.

#import <AppKit/NSButton.h>
#import <AppKit/NSColor.h>
#import <AppKit/NSView.h>
#import <Foundation/Foundation.h>

typedef NSUInteger NSWindowStyleMask;
enum : NSUInteger {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskUtilityWindow = 1 << 4,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};

typedef NSUInteger NSWindowCollectionBehavior;
enum : NSUInteger {
    NSWindowCollectionBehaviorDefault = 0,
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
};

typedef enum : NSInteger {
    NSWindowTitleVisible = 0,
    NSWindowTitleHidden = 1,
} NSWindowTitleVisibility;

typedef enum : NSUInteger {
    NSWindowCloseButton = 0,
    NSWindowMiniaturizeButton = 1,
    NSWindowZoomButton = 2,
} NSWindowButton;

typedef NSInteger NSWindowLevel;

@interface NSWindow : NSObject {
    NSWindowStyleMask styleMask_;
    NSMutableDictionary* buttons_;
}
- (NSButton*)standardWindowButton:(NSWindowButton)b;
- (void)setTitleVisibility:(NSWindowTitleVisibility)titleVisibility;
- (void)setTitlebarAppearsTransparent:(BOOL)titlebarAppearsTransparent;
- (void)setOpaque:(BOOL)opaque;
- (void)setBackgroundColor:(NSColor*)backgroundColor;
- (void)setHasShadow:(BOOL)hasShadow;
- (void)setCollectionBehavior:(NSWindowCollectionBehavior)collectionBehavior;
- (void)setLevel:(NSWindowLevel)level;
- (void)setHidesOnDeactivate:(BOOL)hidesOnDeactivate;
- (void)setMovableByWindowBackground:(BOOL)movableByWindowBackground;
- (BOOL)setFrameAutosaveName:(NSString*)name;
- (void)center;
- (void)makeKeyAndOrderFront:(id)sender;
@property NSWindowStyleMask styleMask;
@end

@interface NSView (InWindow)
@property(readonly, assign) NSWindow* window;
@property(readonly) BOOL mouseDownCanMoveWindow;
@end

@interface NSButton (OfWindow)
- (void)setHidden:(BOOL)hidden;
@end

@interface NSColor (Clear)
+ (NSColor*)clearColor;
@end
