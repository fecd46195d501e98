// Views that keep their children and size those that follow them, and gradients that are only noted.

#import <AppKit/NSColor.h>
#import <AppKit/NSColorSpace.h>
#import <AppKit/NSGradient.h>
#import <AppKit/NSView.h>

#include <string>

#include "ServiceCalls.h"

static std::string number(CGFloat value) { return std::to_string(static_cast<int>(value)); }

@implementation NSView
@synthesize subviews = subviews_;
@synthesize autoresizingMask = autoresizingMask_;
- (instancetype)initWithFrame:(NSRect)frameRect {
    self = [super init];
    if (self) {
        frame_ = frameRect;
        subviews_ = [[NSMutableArray alloc] init];
    }
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
    const CGFloat wider = frame.size.width - frame_.size.width;
    const CGFloat higher = frame.size.height - frame_.size.height;
    frame_ = frame;
    for (NSView* each in subviews_) {
        NSRect next = [each frame];
        if ([each autoresizingMask] & NSViewWidthSizable) next.size.width += wider;
        if ([each autoresizingMask] & NSViewHeightSizable) next.size.height += higher;
        [each setFrame:next];
    }
}
- (NSRect)bounds {
    return NSMakeRect(0, 0, frame_.size.width, frame_.size.height);
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

@implementation NSColor
@synthesize alphaComponent = alpha_;
+ (NSColor*)blackColor {
    NSColor* const black = [[[NSColor alloc] init] autorelease];
    black->alpha_ = 1;
    return black;
}
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha {
    NSColor* const color = [[[NSColor alloc] init] autorelease];
    color->alpha_ = alpha;
    return color;
}
@end

@implementation NSColorSpace
+ (NSColorSpace*)genericRGBColorSpace {
    return [[[NSColorSpace alloc] init] autorelease];
}
@end

@implementation NSGradient
- (instancetype)initWithColors:(NSArray*)colorArray
                   atLocations:(const CGFloat*)locations
                    colorSpace:(NSColorSpace*)colorSpace {
    (void)colorSpace;
    self = [super init];
    // The places ascend, one for each colour.
    for (NSUInteger at = 1; at < [colorArray count]; ++at)
        if (locations[at] <= locations[at - 1]) abort();
    if (self) colors_ = [colorArray copy];
    return self;
}
- (void)dealloc {
    [colors_ release];
    [super dealloc];
}
- (void)drawInRect:(NSRect)rect angle:(CGFloat)angle {
    macdouble::serviceCalls().add("gradient " + number([[colors_ objectAtIndex:0] alphaComponent] * 100) + "-" +
                                  number([[colors_ lastObject] alphaComponent] * 100) + " in " + number(rect.origin.x) +
                                  "," + number(rect.origin.y) + " " + number(rect.size.width) + "x" +
                                  number(rect.size.height) + " to " + number(angle));
}
@end
