#include "StatusBarDouble.h"

#import <AppKit/NSImage.h>
#import <AppKit/NSStatusBarButton.h>

#include "ServiceCalls.h"

static NSMutableSet* imagesInBundle() {
    static NSMutableSet* names = [[NSMutableSet alloc] init];
    return names;
}

@interface NSStatusBar ()
- (NSArray*)items;
@end

@implementation NSStatusBar
+ (NSStatusBar*)systemStatusBar {
    static NSStatusBar* bar = [[NSStatusBar alloc] init];
    return bar;
}
- (id)init {
    self = [super init];
    if (self) items_ = [[NSMutableArray alloc] init];
    return self;
}
- (NSArray*)items {
    return items_;
}
- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
    NSStatusItem* const item = [[[NSStatusItem alloc] init] autorelease];
    [item setLength:length];
    macdouble::serviceCalls().add("status item of length " + std::to_string(static_cast<int>(length)));
    [items_ addObject:item];
    return item;
}
- (void)removeStatusItem:(NSStatusItem*)item {
    [items_ removeObject:item];
}
@end

@implementation NSStatusItem
@synthesize length = length_;
@synthesize menu = menu_;
- (void)setMenu:(NSMenu*)menu {
    macdouble::serviceCalls().add(std::string("menu ") + [[menu title] UTF8String]);
    [menu_ autorelease];
    menu_ = [menu retain];
}
@synthesize button = button_;
- (id)init {
    self = [super init];
    if (self) button_ = [[NSStatusBarButton alloc] initWithFrame:NSZeroRect];
    return self;
}
- (void)dealloc {
    [button_ release];
    [menu_ release];
    [super dealloc];
}
@end

@implementation NSStatusBarButton
@end

@implementation NSButton
@synthesize title = title_;
@synthesize image = image_;
@synthesize imageScaling = imageScaling_;
- (void)setImage:(NSImage*)image {
    macdouble::serviceCalls().add(image ? std::string("image ") + [[image name] UTF8String] : "no image");
    [image_ autorelease];
    image_ = [image retain];
}
- (void)setImageScaling:(NSImageScaling)imageScaling {
    macdouble::serviceCalls().add("image scaling " + std::to_string(imageScaling));
    imageScaling_ = imageScaling;
}
- (id)initWithFrame:(NSRect)frame {
    self = [super initWithFrame:frame];
    // Not the value that is asked for.
    if (self) imageScaling_ = NSImageScaleNone;
    return self;
}
- (void)dealloc {
    [title_ release];
    [image_ release];
    [super dealloc];
}
@end

@implementation NSImage
+ (NSImage*)imageNamed:(NSImageName)name {
    if (![imagesInBundle() containsObject:name]) return nil;
    NSImage* const image = [[[NSImage alloc] init] autorelease];
    image->name_ = [name copy];
    return image;
}
- (NSImageName)name {
    return name_;
}
- (void)dealloc {
    [name_ release];
    [super dealloc];
}
@end

@implementation NSMenu
@synthesize title = title_;
@synthesize autoenablesItems = autoenablesItems_;
- (instancetype)initWithTitle:(NSString*)title {
    self = [super init];
    if (self) {
        title_ = [title copy];
        items_ = [[NSMutableArray alloc] init];
        autoenablesItems_ = YES;
    }
    return self;
}
- (void)dealloc {
    [title_ release];
    [items_ release];
    [super dealloc];
}
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
@synthesize title = title_;
@synthesize action = action_;
@synthesize keyEquivalent = keyEquivalent_;
@synthesize target = target_;
@synthesize representedObject = representedObject_;
@synthesize submenu = submenu_;
@synthesize enabled = enabled_;
+ (NSMenuItem*)separatorItem {
    NSMenuItem* const item = [[[NSMenuItem alloc] initWithTitle:@"" action:nullptr keyEquivalent:@""] autorelease];
    item->separator_ = YES;
    return item;
}
- (instancetype)initWithTitle:(NSString*)string action:(SEL)selector keyEquivalent:(NSString*)charCode {
    self = [super init];
    if (self) {
        title_ = [string copy];
        action_ = selector;
        keyEquivalent_ = [charCode copy];
        enabled_ = YES;
    }
    return self;
}
- (void)dealloc {
    [title_ release];
    [keyEquivalent_ release];
    [representedObject_ release];
    [submenu_ release];
    [super dealloc];
}
- (BOOL)isSeparatorItem {
    return separator_;
}
@end

namespace macdouble {

NSArray* statusItems() { return [[NSStatusBar systemStatusBar] items]; }

void setImageInBundle(NSString* name, bool there) {
    if (there)
        [imagesInBundle() addObject:name];
    else
        [imagesInBundle() removeObject:name];
}

bool choose(NSMenuItem* item) {
    if (![item isEnabled] || ![item action]) return false;
    [[item target] performSelector:[item action] withObject:item];
    return true;
}

}  // namespace macdouble
