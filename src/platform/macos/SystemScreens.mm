#include "platform/macos/SystemScreens.h"

#import <AppKit/NSScreen.h>

#include <cmath>

namespace vantor {

namespace {

int whole(CGFloat value) { return static_cast<int>(std::lround(value)); }

}  // namespace

std::vector<Screen> SystemScreens::all() const {
    NSArray* const screens = [NSScreen screens];
    // Between two monitors there may be a moment without any.
    if ([screens count] == 0) return {{{0, 0, 1280, 800}, {}}};
    // The system counts upwards from the bottom of its first screen, the seam downwards from the top of that.
    const CGFloat top = NSMaxY([[screens objectAtIndex:0] frame]);
    const auto seamFrame = [top](NSScreen* screen) {
        const NSRect frame = [screen frame];
        return Screen{{whole(NSMinX(frame)), whole(top - NSMaxY(frame)), whole(NSWidth(frame)), whole(NSHeight(frame))},
                      {}};
    };
    NSScreen* const main = [NSScreen mainScreen];
    std::vector<Screen> frames;
    if (main) frames.push_back(seamFrame(main));
    for (NSScreen* screen in screens)
        if (![screen isEqual:main]) frames.push_back(seamFrame(screen));
    return frames;
}

}  // namespace vantor
