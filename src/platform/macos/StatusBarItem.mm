#include "platform/macos/StatusBarItem.h"

#import <AppKit/NSButton.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSMenu.h>
#import <AppKit/NSMenuItem.h>
#import <AppKit/NSStatusBar.h>
#import <AppKit/NSStatusBarButton.h>
#import <AppKit/NSStatusItem.h>

#include <utility>

#include "platform/macos/FoundationText.h"

// What runs when an entry is chosen. The entry keeps it.
@interface VantorMenuChoice : NSObject {
    std::function<void()>* action_;
}
- (id)initWithAction:(std::function<void()>)action;
- (void)choose:(id)sender;
@end

@implementation VantorMenuChoice
- (id)initWithAction:(std::function<void()>)action {
    self = [super init];
    if (self) action_ = new std::function<void()>(std::move(action));
    return self;
}
- (void)dealloc {
    delete action_;
    [super dealloc];
}
- (void)choose:(id)sender {
    (void)sender;
    // A copy: the action may replace the menu that it was chosen from.
    const auto action = *action_;
    action();
}
@end

namespace vantor {

namespace {

NSMenu* makeMenu(NSString* title, std::vector<MenuEntry> entries);

NSMenuItem* makeItem(MenuEntry entry) {
    if (entry.kind == MenuEntry::Kind::separator) return [NSMenuItem separatorItem];
    NSString* const title = textOrEmpty(entry.title);
    const SEL action = entry.action ? @selector(choose:) : nullptr;
    NSMenuItem* const item = [[[NSMenuItem alloc] initWithTitle:title action:action keyEquivalent:@""] autorelease];
    [item setEnabled:entry.enabled && (entry.action || !entry.submenu.empty())];
    if (entry.action) {
        VantorMenuChoice* const choice =
            [[[VantorMenuChoice alloc] initWithAction:std::move(entry.action)] autorelease];
        [item setTarget:choice];
        [item setRepresentedObject:choice];  // the target alone is not retained
    }
    if (!entry.submenu.empty()) [item setSubmenu:makeMenu(title, std::move(entry.submenu))];
    return item;
}

NSMenu* makeMenu(NSString* title, std::vector<MenuEntry> entries) {
    NSMenu* const menu = [[[NSMenu alloc] initWithTitle:title] autorelease];
    [menu setAutoenablesItems:NO];
    for (MenuEntry& entry : entries) [menu addItem:makeItem(std::move(entry))];
    return menu;
}

}  // namespace

struct StatusBarItem::Item {
    NSStatusItem* item;

    Item() : item([[[NSStatusBar systemStatusBar] statusItemWithLength:NSSquareStatusItemLength] retain]) {}
    ~Item() {
        [[NSStatusBar systemStatusBar] removeStatusItem:item];
        [item release];
    }
};

StatusBarItem::StatusBarItem() = default;

StatusBarItem::~StatusBarItem() = default;

void StatusBarItem::makeItem() {
    item_ = std::make_unique<Item>();
    NSStatusBarButton* const button = [item_->item button];
    NSImage* const image = [NSImage imageNamed:@"vantor"];
    // Drawn in the status bar's own colour, light or dark.
    [image setTemplate:YES];
    [button setImageScaling:NSImageScaleProportionallyDown];
    [button setImage:image];
    // Outside the bundle there is no image, and an item without one cannot be seen.
    if (!image) [button setTitle:@"Vantor"];
}

void StatusBarItem::setMenu(const std::string& title, std::vector<MenuEntry> entries) {
    @autoreleasepool {
        if (!item_) makeItem();
        [item_->item setMenu:makeMenu(textOrEmpty(title), std::move(entries))];
    }
}

void StatusBarItem::setEntry(std::size_t position, const std::string& title, bool enabled) {
    if (!item_) return;
    @autoreleasepool {
        NSMenu* const menu = [item_->item menu];
        NSString* const text = systemText(title);
        if (!text || position >= static_cast<std::size_t>([menu numberOfItems])) return;
        NSMenuItem* const item = [menu itemAtIndex:static_cast<NSInteger>(position)];
        [item setTitle:text];
        [item setEnabled:enabled];
    }
}

}  // namespace vantor
