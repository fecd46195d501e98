#include "platform/macos/SharedWorkspace.h"

#import <AppKit/NSApplication.h>
#import <AppKit/NSRunningApplication.h>
#import <AppKit/NSWorkspace.h>
#import <ApplicationServices/ApplicationServices.h>
#import <CoreFoundation/CoreFoundation.h>

#include <unistd.h>

#include <functional>
#include <thread>
#include <utility>

#include "platform/macos/FoundationText.h"
#include "platform/macos/Owned.h"

// Hears which application is in front.
@interface VantorFrontmostObserver : NSObject {
    std::function<void(NSRunningApplication*)>* handler_;
}
- (id)initWithHandler:(std::function<void(NSRunningApplication*)>)handler;
@end

@implementation VantorFrontmostObserver
- (id)initWithHandler:(std::function<void(NSRunningApplication*)>)handler {
    self = [super init];
    if (self) handler_ = new std::function<void(NSRunningApplication*)>(std::move(handler));
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
    (*handler_)([found isKindOfClass:[NSRunningApplication class]] ? found : nil);
}
@end

namespace vantor {

namespace {

constexpr std::chrono::milliseconds lookAgainAfter{4};
constexpr float secondsToAnswer = 0.05F;

// Asked of the system itself: what the application knows of its own activity changes only in the event loop, which is
// not to turn while somebody waits.
bool hasKeyboard(AXUIElementRef system) {
    CFTypeRef found = nullptr;
    if (AXUIElementCopyAttributeValue(system, kAXFocusedApplicationAttribute, &found) != kAXErrorSuccess) return false;
    const Owned<CFTypeRef> application(found);
    pid_t process = 0;
    return AXUIElementGetPid(static_cast<AXUIElementRef>(found), &process) == kAXErrorSuccess && process == getpid();
}

NSString* frontmostKey() { return NSStringFromSelector(@selector(frontmostApplication)); }

Subscription observeFrontmost(std::function<void(NSRunningApplication*)> handler) {
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

}  // namespace

SharedWorkspace::SharedWorkspace()
    : frontmostObserver_(observeFrontmost(
          [this](NSRunningApplication* application) { frontmost_ = [application processIdentifier]; })) {}

Subscription SharedWorkspace::observeFrontmostApplication(FrontmostHandler handler) {
    return observeFrontmost([handler = std::move(handler)](NSRunningApplication* application) {
        handler(plainText([application bundleIdentifier]));
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
    wasActive_ = [application isActive];
    [application hide:nil];
    [application unhideWithoutActivation];
}

bool SharedWorkspace::awaitOther(std::chrono::milliseconds atMost) {
    typedInto_ = frontmost_;
    if (!wasActive_) return true;
    const Owned<AXUIElementRef> system(AXUIElementCreateSystemWide());
    // An application that does not answer is not this one.
    AXUIElementSetMessagingTimeout(system.get(), secondsToAnswer);
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (hasKeyboard(system.get())) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(lookAgainAfter);
    }
    typedInto_ = frontmost_;
    return true;
}

bool SharedWorkspace::isKept() {
    const int now = frontmost_;
    // That Vantor is not in front any more may be heard later than it is so.
    if (typedInto_ == getpid()) typedInto_ = now;
    return now == typedInto_;
}

}  // namespace vantor
