#pragma once
// What is used of the system's views, as their public documentation declares them.

#import <Foundation/Foundation.h>

typedef enum : NSUInteger {
    NSViewNotSizable = 0,
    NSViewWidthSizable = 2,
    NSViewHeightSizable = 16,
} NSAutoresizingMaskOptions;

@interface NSView : NSObject {
    NSRect frame_;
    NSMutableArray* subviews_;
    NSUInteger autoresizingMask_;
}
- (instancetype)initWithFrame:(NSRect)frameRect;
- (void)addSubview:(NSView*)view;
- (void)drawRect:(NSRect)dirtyRect;
- (NSView*)hitTest:(NSPoint)point;
@property NSRect frame;
@property(readonly) NSRect bounds;
@property(readonly, copy) NSArray* subviews;
@property NSUInteger autoresizingMask;
@end
