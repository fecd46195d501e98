#pragma once
// What is used of the system's menus, as their public documentation declares them.

#import <Foundation/Foundation.h>

@class NSMenuItem;

@interface NSMenu : NSObject {
    NSString* title_;
    NSMutableArray* items_;
    BOOL autoenablesItems_;
}
- (instancetype)initWithTitle:(NSString*)title;
- (void)addItem:(NSMenuItem*)newItem;
- (NSMenuItem*)itemAtIndex:(NSInteger)index;
@property(copy) NSString* title;
@property(readonly) NSInteger numberOfItems;
@property BOOL autoenablesItems;
@end
