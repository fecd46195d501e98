#include "platform/macos/SharedWorkspace.h"

#import <AppKit/NSApplication.h>
#import <AppKit/NSRunningApplication.h>
#import <AppKit/NSWorkspace.h>
#import <CoreFoundation/CoreFoundation.h>

#include <utility>

#include "platform/macos/FoundationText.h"

// Hears which application is in front.
@interface VantorFrontmostObserver : NSObject {
    vantor::Workspace::FrontmostHandler* handler_;
}
- (id)initWithHandler:(vantor::Workspace::FrontmostHandler)handler;
@end

@implementation VantorFrontmostObserver
- (id)initWithHandler:(vantor::Workspace::FrontmostHandler)handler {
    self = [super init];
    if (self) handler_ = new vantor::Workspace::FrontmostHandler(std::move(handler));
    return self;
}
- (void)dealloc {
    delete handler_;
    [super dealloc];
}
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
    (void)keyPath, (void)object, (void)context;
    // In a change, no application is an object too.
    const id found = [change objectForKey:NSKeyValueChangeNewKey];
    NSRunningApplication* const application = [found isKindOfClass:[NSRunningApplication class]] ? found : nil;
    (*handler_)(vantor::plainText([application bundleIdentifier]));
}
@end

namespace vantor {

namespace {

NSString* frontmostKey() { return NSStringFromSelector(@selector(frontmostApplication)); }

}  // namespace

Subscription SharedWorkspace::observeFrontmostApplication(FrontmostHandler handler) {
    VantorFrontmostObserver* const observer = [[VantorFrontmostObserver alloc] initWithHandler:std::move(handler)];
    [[NSWorkspace sharedWorkspace] addObserver:observer
                                    forKeyPath:frontmostKey()
                                       options:NSKeyValueObservingOptionNew | NSKeyValueObservingOptionInitial
                                       context:nullptr];
    return Subscription([observer] {
        [[NSWorkspace sharedWorkspace] removeObserver:observer forKeyPath:frontmostKey()];
        [observer autorelease];  // its handler may be what ends this
    });
}

std::optional<std::string> SharedWorkspace::displayName(const std::string& identifier) const {
    NSString* const wanted = systemText(identifier);
    NSBundle* const bundle = [wanted length] > 0 ? [NSBundle bundleWithIdentifier:wanted] : nil;
    const id name = [[bundle infoDictionary] objectForKey:(NSString*)kCFBundleNameKey];
    if (![name isKindOfClass:[NSString class]]) return std::nullopt;
    return plainText(name);
}

void SharedWorkspace::hideAndUnhideWithoutActivation() {
    NSApplication* const application = [NSApplication sharedApplication];
    [application hide:nil];
    [application unhideWithoutActivation];
}

}  // namespace vantor
