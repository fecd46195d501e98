#pragma once
// What is used of the system's application object, as its public documentation declares it.

#import <AppKit/NSMenu.h>
#import <Foundation/Foundation.h>

typedef enum : NSInteger {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
} NSApplicationActivationPolicy;

@interface NSApplication : NSObject {
    NSMenu* mainMenu_;
}
+ (NSApplication*)sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)hide:(id)sender;
- (void)unhideWithoutActivation;
@property(retain) NSMenu* mainMenu;
@end
