#pragma once
// What is used of the system's menu entries, as their public documentation declares them.

#import <Foundation/Foundation.h>

@class NSMenu;

@interface NSMenuItem : NSObject {
    NSString* title_;
    SEL action_;
    NSString* keyEquivalent_;
    id target_;
    id representedObject_;
    NSMenu* submenu_;
    BOOL enabled_;
    BOOL separator_;
}
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string action:(SEL)selector keyEquivalent:(NSString*)charCode;
@property(copy) NSString* title;
@property SEL action;
@property(copy) NSString* keyEquivalent;
@property(assign) id target;
@property(retain) id representedObject;
@property(retain) NSMenu* submenu;
@property(getter=isEnabled) BOOL enabled;
@property(readonly, getter=isSeparatorItem) BOOL separatorItem;
@end
