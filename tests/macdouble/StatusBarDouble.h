#pragma once
// The status bar as a test sees it, and the hand that chooses from its menus.

#import <AppKit/NSMenu.h>
#import <AppKit/NSMenuItem.h>
#import <AppKit/NSStatusBar.h>
#import <AppKit/NSStatusItem.h>

namespace macdouble {

NSArray* statusItems();
// Whether the application's bundle holds an image of this name.
void setImageInBundle(NSString* name, bool there);
// Only what is enabled can be chosen.
bool choose(NSMenuItem* item);

}  // namespace macdouble
