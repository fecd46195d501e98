#include "platform/macos/UserDefaults.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "base/ObserverList.h"
#include "platform/macos/FoundationText.h"

// Sent to every running copy after a write; each looks for itself what has changed.
static NSString* const settingsWritten = @"orvendel.Vantor.settingsWritten";

// What the system sends a notice to.
@interface VantorSettingsListener : NSObject {
    std::function<void()>* heard_;
}
- (id)initWithHandler:(std::function<void()>)handler;
- (void)settingsWritten:(NSNotification*)notification;
@end

@implementation VantorSettingsListener
- (id)initWithHandler:(std::function<void()>)handler {
    self = [super init];
    if (self) heard_ = new std::function<void()>(std::move(handler));
    return self;
}
- (void)dealloc {
    delete heard_;
    [super dealloc];
}
- (void)settingsWritten:(NSNotification*)notification {
    (void)notification;
    (*heard_)();
}
@end

namespace vantor {

namespace {

NSUserDefaults* store() { return [NSUserDefaults standardUserDefaults]; }

// A boolean is a number, too, of a class of its own.
bool isBoolean(id value) { return [value isKindOfClass:[[NSNumber numberWithBool:YES] class]]; }

std::vector<std::string> plainTexts(NSArray* texts) {
    std::vector<std::string> plain;
    for (NSString* text in texts) plain.push_back(plainText(text));
    return plain;
}

// Nil when a text is no UTF-8.
NSArray* systemTexts(const std::vector<std::string>& texts) {
    NSMutableArray* const array = [NSMutableArray array];
    for (const std::string& text : texts) {
        NSString* const string = systemText(text);
        if (!string) return nil;
        [array addObject:string];
    }
    return array;
}

struct Writing {
    NSString* key;

    bool operator()(bool value) const {
        [store() setBool:value forKey:key];
        return true;
    }
    bool operator()(double value) const {
        [store() setDouble:value forKey:key];
        return true;
    }
    bool operator()(const std::string& value) const { return set(systemText(value)); }
    bool operator()(const std::vector<std::string>& value) const { return set(systemTexts(value)); }

private:
    bool set(id object) const {
        if (object) [store() setObject:object forKey:key];
        return object != nil;
    }
};

}  // namespace

struct UserDefaults::Changes {
    explicit Changes(MainThread* thread) : mainThread(thread) {}

    MainThread* mainThread;
    VantorSettingsListener* listener = nil;
    ObserverList<ChangeHandler> observers;
    NSDictionary* known = nil;  // nil until somebody observes; of the main thread alone after that

    ~Changes() { [known release]; }

    static void lookLater(const std::shared_ptr<Changes>& changes) {
        if (!changes->mainThread) return;
        changes->mainThread->post([weak = std::weak_ptr(changes)] {
            if (const auto alive = weak.lock()) look(alive);
        });
    }

    static void look(const std::shared_ptr<Changes>& changes) {
        @autoreleasepool {
            if (!changes->known) return;
            NSDictionary* const before = [changes->known autorelease];
            NSDictionary* const now = [[store() dictionaryRepresentation] copy];
            changes->known = now;
            NSMutableSet* const keys = [NSMutableSet setWithArray:[before allKeys]];
            [keys addObjectsFromArray:[now allKeys]];
            for (NSString* key in keys)
                if (!isEqual([before objectForKey:key], [now objectForKey:key]))
                    changes->observers.tell(plainText(key));
        }
    }

    // Nothing and nothing are equal; a boolean is not the number that it looks like.
    static bool isEqual(id one, id other) {
        return one == other || (isBoolean(one) == isBoolean(other) && [one isEqual:other]);
    }
};

UserDefaults::UserDefaults(MainThread* mainThread) : changes_(std::make_shared<Changes>(mainThread)) {}

UserDefaults::~UserDefaults() {
    if (!changes_->listener) return;
    [[NSDistributedNotificationCenter defaultCenter] removeObserver:changes_->listener];
    [changes_->listener release];
}

std::optional<SettingValue> UserDefaults::value(std::string_view key) const {
    @autoreleasepool {
        NSString* const name = systemText(key);
        if (!name) return std::nullopt;
        const id stored = [store() objectForKey:name];
        if (isBoolean(stored)) return [store() boolForKey:name] != NO;
        if ([stored isKindOfClass:[NSNumber class]]) return [store() doubleForKey:name];
        if ([stored isKindOfClass:[NSString class]]) return plainText([store() stringForKey:name]);
        // Nothing unless each of its elements is a text.
        if (NSArray* const texts = [store() stringArrayForKey:name]) return plainTexts(texts);
        return std::nullopt;
    }
}

Defaults::Verdict UserDefaults::setValue(std::string_view key, const SettingValue& value) {
    @autoreleasepool {
        NSString* const name = systemText(key);
        if (!name || !std::visit(Writing{name}, value)) return Verdict::failed;
        return written();
    }
}

Defaults::Verdict UserDefaults::removeValue(std::string_view key) {
    @autoreleasepool {
        NSString* const name = systemText(key);
        if (!name) return Verdict::failed;
        [store() removeObjectForKey:name];
        return written();
    }
}

Defaults::Verdict UserDefaults::written() {
    // Vantor ends at once when the player quits; what is still on its way by then would be lost.
    const bool stored = [store() synchronize] != NO;
    Changes::lookLater(changes_);
    [[NSDistributedNotificationCenter defaultCenter] postNotificationName:settingsWritten
                                                                   object:nil
                                                                 userInfo:nil
                                                       deliverImmediately:YES];
    return stored ? Verdict::stored : Verdict::failed;
}

Subscription UserDefaults::observe(ChangeHandler handler) {
    @autoreleasepool {
        if (!changes_->listener) listen();
        return changes_->observers.add(std::move(handler));
    }
}

void UserDefaults::listen() {
    changes_->known = [[store() dictionaryRepresentation] copy];
    changes_->listener = [[VantorSettingsListener alloc] initWithHandler:[weak = std::weak_ptr(changes_)] {
        if (const auto alive = weak.lock()) Changes::lookLater(alive);
    }];
    [[NSDistributedNotificationCenter defaultCenter] addObserver:changes_->listener
                                                        selector:@selector(settingsWritten:)
                                                            name:settingsWritten
                                                          object:nil
                                              suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
}

}  // namespace vantor
