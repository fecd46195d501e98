#pragma once
// What is used of the system's application object, as its public documentation declares it.

#import <Foundation/Foundation.h>

@interface NSApplication : NSObject
+ (NSApplication*)sharedApplication;
- (void)hide:(id)sender;
- (void)unhideWithoutActivation;
@end
