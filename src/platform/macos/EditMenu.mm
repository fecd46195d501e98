#include "platform/macos/EditMenu.h"

#import <AppKit/NSApplication.h>
#import <AppKit/NSMenu.h>
#import <AppKit/NSMenuItem.h>

namespace vantor {

namespace {

void add(NSMenu* menu, NSString* title, SEL action, NSString* key) {
    // Without a target: whoever has the keyboard is asked, and a text field of the toolkit's, which does not know them,
    // gets the key itself.
    [menu addItem:[[[NSMenuItem alloc] initWithTitle:title action:action keyEquivalent:key] autorelease]];
}

NSMenu* menuBar(NSApplication* application) {
    if (![application mainMenu]) [application setMainMenu:[[[NSMenu alloc] initWithTitle:@""] autorelease]];
    return [application mainMenu];
}

}  // namespace

void addEditMenu() {
    @autoreleasepool {
        NSMenu* const menu = [[[NSMenu alloc] initWithTitle:@"Edit"] autorelease];
        add(menu, @"Cut", @selector(cut:), @"x");
        add(menu, @"Copy", @selector(copy:), @"c");
        add(menu, @"Paste", @selector(paste:), @"v");
        add(menu, @"Select All", @selector(selectAll:), @"a");
        NSMenuItem* const entry = [[[NSMenuItem alloc] initWithTitle:@"Edit" action:nullptr
                                                       keyEquivalent:@""] autorelease];
        [entry setSubmenu:menu];
        [menuBar([NSApplication sharedApplication]) addItem:entry];
    }
}

}  // namespace vantor
