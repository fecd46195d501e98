#pragma once
// Soft fades over the page's four edges. They let every click through. Objective-C++ only; main thread.

#import <AppKit/NSView.h>

@interface VantorPageFades : NSView
// Over all of the page, whose size they follow.
+ (void)layOver:(NSView*)page;
@end
