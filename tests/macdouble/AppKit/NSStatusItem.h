#pragma once
// What is used of the status bar's items, as their public documentation declares them.

#import <Foundation/Foundation.h>

@class NSMenu;
@class NSStatusBarButton;

@interface NSStatusItem : NSObject {
    NSStatusBarButton* button_;
    NSMenu* menu_;
    CGFloat length_;
}
@property CGFloat length;
@property(nonatomic, retain) NSMenu* menu;
@property(readonly, retain) NSStatusBarButton* button;
@end
