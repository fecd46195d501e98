// The status bar, menus and buttons, and the hand that chooses.

#include "Mac.h"

using macdouble::mac;

@implementation NSImage
+ (NSImage*)imageNamed:(NSImageName)name {
    return mac().bundleHasImage && [name isEqual:@"vantor"] ? [[[NSImage alloc] init] autorelease] : nil;
}
- (void)setTemplate:(BOOL)isTemplate {
    template_ = isTemplate;
}
- (BOOL)isTemplate {
    return template_;
}
@end

@implementation NSButton
@synthesize title = title_, image = image_, imageScaling = imageScaling_;
- (id)init {
    self = [super init];
    imageScaling_ = NSImageScaleNone;  // not the value that is asked for
    return self;
}
OWNS(title_, image_)
@end

@implementation NSStatusBarButton
@end

@implementation NSStatusItem
@synthesize length = length_, menu = menu_, button = button_;
- (id)init {
    self = [super init];
    button_ = [[NSStatusBarButton alloc] init];
    return self;
}
OWNS(button_, menu_)
@end

@implementation NSStatusBar
+ (NSStatusBar*)systemStatusBar {
    static NSStatusBar* const bar = [[NSStatusBar alloc] init];
    return bar;
}
- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
    NSStatusItem* const item = [[[NSStatusItem alloc] init] autorelease];
    [item setLength:length];
    [mac().statusItems addObject:item];
    return item;
}
- (void)removeStatusItem:(NSStatusItem*)item {
    [mac().statusItems removeObject:item];
}
@end

@implementation NSMenu
@synthesize title = title_, autoenablesItems = autoenablesItems_;
- (instancetype)initWithTitle:(NSString*)title {
    self = [super init];
    title_ = [title copy];
    items_ = [[NSMutableArray alloc] init];
    autoenablesItems_ = YES;
    return self;
}
OWNS(title_, items_)
- (void)addItem:(NSMenuItem*)newItem {
    [items_ addObject:newItem];
}
- (NSMenuItem*)itemAtIndex:(NSInteger)index {
    return [items_ objectAtIndex:static_cast<NSUInteger>(index)];
}
- (NSInteger)numberOfItems {
    return static_cast<NSInteger>([items_ count]);
}
@end

@implementation NSMenuItem
@synthesize title = title_, action = action_, target = target_, representedObject = representedObject_,
            submenu = submenu_, enabled = enabled_, separatorItem = separatorItem_;
+ (NSMenuItem*)separatorItem {
    NSMenuItem* const item = [[[NSMenuItem alloc] initWithTitle:@"-" action:nullptr keyEquivalent:@""] autorelease];
    item->separatorItem_ = YES;
    return item;
}
- (instancetype)initWithTitle:(NSString*)string action:(SEL)selector keyEquivalent:(NSString*)charCode {
    (void)charCode;
    self = [super init];
    title_ = [string copy];
    action_ = selector;
    enabled_ = YES;
    return self;
}
OWNS(title_, representedObject_, submenu_)
@end

bool macdouble::Mac::choose(NSMenuItem* item) {
    if (![item isEnabled] || ![item action] || ![item target]) return false;
    [[item target] performSelector:[item action] withObject:item];
    return true;
}
