#pragma once
// What is used of the system's running applications, as their public documentation declares them.

#import <Foundation/Foundation.h>

@interface NSRunningApplication : NSObject {
    NSString* bundleIdentifier_;
}
@property(readonly, copy) NSString* bundleIdentifier;
@end
