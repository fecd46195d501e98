#pragma once
// A window that may stay beside what is active.

#import <AppKit/NSWindow.h>

@interface NSPanel : NSWindow
@end
