#pragma once
// What is used of the system's screens, as their public documentation declares them.

#import <Foundation/Foundation.h>

@interface NSScreen : NSObject {
    NSRect frame_;
}
+ (NSArray*)screens;
+ (NSScreen*)mainScreen;
@property(readonly) NSRect frame;
@end
