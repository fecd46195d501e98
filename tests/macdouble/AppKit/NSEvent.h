#pragma once
// What is used of the system's events, as their public documentation declares them.

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

typedef enum : NSUInteger {
    NSEventTypeKeyDown = 10,
    NSEventTypeKeyUp = 11,
    NSEventTypeFlagsChanged = 12,
} NSEventType;

typedef NSUInteger NSEventMask;
typedef NSUInteger NSEventModifierFlags;

@interface NSEvent : NSObject {
    CGEventRef event_;
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
