#pragma once
// What is used of the system's gradients, as their public documentation declares them.

#import <Foundation/Foundation.h>

@class NSColorSpace;

@interface NSGradient : NSObject {
    NSArray* colors_;
}
- (instancetype)initWithColors:(NSArray*)colorArray
                   atLocations:(const CGFloat*)locations
                    colorSpace:(NSColorSpace*)colorSpace;
- (void)drawInRect:(NSRect)rect angle:(CGFloat)angle;
@end
