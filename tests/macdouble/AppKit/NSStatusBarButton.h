#pragma once
// The button of an item in the status bar.

#import <AppKit/NSButton.h>

@interface NSStatusBarButton : NSButton
@end
