#pragma once
// What is used of the system's workspace, as its public documentation declares it.

#import <AppKit/NSRunningApplication.h>
#import <Foundation/Foundation.h>

@interface NSWorkspace : NSObject {
    NSRunningApplication* frontmostApplication_;
}
+ (NSWorkspace*)sharedWorkspace;
@property(readonly, retain) NSRunningApplication* frontmostApplication;
@end
