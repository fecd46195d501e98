#pragma once
// What is used of the system's workspace, as its public documentation declares it.

#import <AppKit/NSRunningApplication.h>
#import <Foundation/Foundation.h>

extern NSString* const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

@interface NSWorkspace : NSObject {
    NSRunningApplication* frontmostApplication_;
    NSNotificationCenter* notificationCenter_;
}
+ (NSWorkspace*)sharedWorkspace;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@property(readonly, retain) NSNotificationCenter* notificationCenter;
@property(readonly, retain) NSRunningApplication* frontmostApplication;
@end
