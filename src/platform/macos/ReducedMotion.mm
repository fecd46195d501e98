#include "platform/macos/ReducedMotion.h"

#import <AppKit/NSWorkspace.h>

#include <utility>

// What the system sends its notice to.
@interface VantorMotionListener : NSObject {
    std::function<void(bool)>* handler_;
}
- (id)initWithHandler:(std::function<void(bool)>)handler;
- (void)displayOptionsChanged:(NSNotification*)notification;
@end

@implementation VantorMotionListener
- (id)initWithHandler:(std::function<void(bool)>)handler {
    self = [super init];
    if (self) handler_ = new std::function<void(bool)>(std::move(handler));
    return self;
}
- (void)dealloc {
    delete handler_;
    [super dealloc];
}
- (void)displayOptionsChanged:(NSNotification*)notification {
    (void)notification;
    (*handler_)([[NSWorkspace sharedWorkspace] accessibilityDisplayShouldReduceMotion] != NO);
}
@end

namespace vantor {

Subscription observeReducedMotion(std::function<void(bool reduced)> handler) {
    VantorMotionListener* const listener = [[VantorMotionListener alloc] initWithHandler:std::move(handler)];
    // The workspace's own center: the default one does not hear of it.
    [[[NSWorkspace sharedWorkspace] notificationCenter]
        addObserver:listener
           selector:@selector(displayOptionsChanged:)
               name:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
             object:nil];
    [listener displayOptionsChanged:nil];
    return Subscription([listener] {
        [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:listener];
        [listener autorelease];  // its handler may be what ends this
    });
}

}  // namespace vantor
