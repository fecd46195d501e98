#include "platform/macos/PrivacyPermissions.h"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#import <IOKit/hidsystem/IOHIDLib.h>

#include <utility>

#include "base/Notice.h"

namespace vantor {

namespace {

struct Granted {
    bool hearKeys = false;
    bool pressKeys = false;

    bool operator==(const Granted&) const = default;
};

bool trusted(bool prompt) {
    @autoreleasepool {
        NSDictionary* const options = [NSDictionary dictionaryWithObject:(id)(prompt ? kCFBooleanTrue : kCFBooleanFalse)
                                                                  forKey:(NSString*)kAXTrustedCheckOptionPrompt];
        return AXIsProcessTrustedWithOptions((CFDictionaryRef)options);
    }
}

Granted look() { return {IOHIDCheckAccess(kIOHIDRequestTypeListenEvent) == kIOHIDAccessTypeGranted, trusted(false)}; }

}  // namespace

struct PrivacyPermissions::Watch {
    explicit Watch(Scheduler& later) : scheduler(later) {}

    Scheduler& scheduler;
    Notice changed;
    Granted known;
    int listeners = 0;
    bool looking = false;

    static void lookAgain(const std::shared_ptr<Watch>& watch) {
        if (std::exchange(watch->looking, true)) return;
        watch->scheduler.after(between, [weak = std::weak_ptr(watch)] {
            const auto alive = weak.lock();
            if (!alive) return;
            alive->looking = false;
            if (alive->listeners == 0) return;
            lookAgain(alive);
            const Granted now = look();
            if (std::exchange(alive->known, now) != now) alive->changed.announce();
        });
    }
};

PrivacyPermissions::PrivacyPermissions(Scheduler& scheduler) : watch_(std::make_shared<Watch>(scheduler)) {}

bool PrivacyPermissions::granted(Kind kind) const {
    const Granted now = look();
    return kind == Kind::hearKeys ? now.hearKeys : now.pressKeys;
}

void PrivacyPermissions::ask(Kind kind) {
    if (kind == Kind::hearKeys)
        (void)IOHIDRequestAccess(kIOHIDRequestTypeListenEvent);
    else
        (void)trusted(true);
}

Subscription PrivacyPermissions::observe(std::function<void()> handler) {
    if (watch_->listeners++ == 0) watch_->known = look();
    Watch::lookAgain(watch_);
    auto listening = std::make_shared<Subscription>(watch_->changed.observe(std::move(handler)));
    return Subscription([listening = std::move(listening), weak = std::weak_ptr(watch_)] {
        listening->reset();
        if (const auto alive = weak.lock()) --alive->listeners;
    });
}

}  // namespace vantor
