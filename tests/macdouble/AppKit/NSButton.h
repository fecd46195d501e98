#pragma once
// What is used of the system's buttons, as their public documentation declares them.

#import <AppKit/NSView.h>
#import <Foundation/Foundation.h>

@class NSImage;

typedef enum : NSUInteger {
    NSImageScaleProportionallyDown = 0,
    NSImageScaleAxesIndependently = 1,
    NSImageScaleNone = 2,
    NSImageScaleProportionallyUpOrDown = 3,
} NSImageScaling;

@interface NSButton : NSView {
    NSString* title_;
    NSImage* image_;
    NSImageScaling imageScaling_;
}
@property(copy) NSString* title;
@property(nonatomic, retain) NSImage* image;
@property(nonatomic) NSImageScaling imageScaling;
@end
