#pragma once
// What is used of the system's status bar, as its public documentation declares it.

#import <Foundation/Foundation.h>

@class NSStatusItem;

static const CGFloat NSVariableStatusItemLength = -1.0;
static const CGFloat NSSquareStatusItemLength = -2.0;

@interface NSStatusBar : NSObject {
    NSMutableArray* items_;
}
+ (NSStatusBar*)systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end
