#pragma once
// What is used of the system's colours, as their public documentation declares them.

#import <Foundation/Foundation.h>

@interface NSColor : NSObject {
    CGFloat alpha_;
}
+ (NSColor*)blackColor;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
@property(readonly) CGFloat alphaComponent;
@end
