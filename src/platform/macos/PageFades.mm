#include "platform/macos/PageFades.h"

#import <AppKit/NSColor.h>
#import <AppKit/NSColorSpace.h>
#import <AppKit/NSGradient.h>

namespace {

constexpr CGFloat depth = 18;
constexpr CGFloat darkest = 0.59;  // at the very edge

NSColor* black(CGFloat alpha) { return [[NSColor blackColor] colorWithAlphaComponent:alpha]; }

// From the edge inwards.
NSGradient* fade() {
    const CGFloat places[] = {0, 0.4, 1};
    return [[[NSGradient alloc] initWithColors:@[ black(darkest), black(darkest / 3), black(0) ]
                                   atLocations:places
                                    colorSpace:[NSColorSpace genericRGBColorSpace]] autorelease];
}

}  // namespace

@implementation VantorPageFades
+ (void)layOver:(NSView*)page {
    VantorPageFades* const fades = [[VantorPageFades alloc] initWithFrame:[page bounds]];
    [fades setAutoresizingMask:NSViewWidthSizable | NSViewHeightSizable];
    [page addSubview:fades];
    [fades release];
}

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    const NSRect all = [self bounds];
    NSGradient* const gradient = fade();
    // The angle says where the gradient goes: upwards is 90 degrees.
    [gradient drawInRect:NSMakeRect(0, all.size.height - depth, all.size.width, depth) angle:270];
    [gradient drawInRect:NSMakeRect(0, 0, all.size.width, depth) angle:90];
    [gradient drawInRect:NSMakeRect(0, 0, depth, all.size.height) angle:0];
    [gradient drawInRect:NSMakeRect(all.size.width - depth, 0, depth, all.size.height) angle:180];
}

- (NSView*)hitTest:(NSPoint)point {
    (void)point;
    return nil;
}
@end
