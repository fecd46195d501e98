// The settings in the system's own store, in a folder of the test's: the types that it keeps, and who hears of a
// change.

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

#include "Mac.h"
#include "fake/FakeMainThread.h"
#include "platform/macos/UserDefaults.h"

// The system's own carries notices between processes and needs a service for that; here the sender and the listeners
// share one process.
@interface LocalCenter : NSNotificationCenter
@end

@implementation LocalCenter
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(NSString*)name
                object:(NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behavior {
    // What waits until the application is in front is heard too late beside a game.
    if (behavior == NSNotificationSuspensionBehaviorDeliverImmediately)
        [self addObserver:observer selector:selector name:name object:object];
}
- (void)postNotificationName:(NSString*)name
                      object:(NSString*)object
                    userInfo:(NSDictionary*)userInfo
          deliverImmediately:(BOOL)immediately {
    if (immediately) [self postNotificationName:name object:object userInfo:userInfo];
}
@end

@implementation NSDistributedNotificationCenter (OneProcess)
+ (id)defaultCenter {
    static LocalCenter* const center = [[LocalCenter alloc] init];
    return center;
}
@end

namespace vantor {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

NSUserDefaults* store() { return [NSUserDefaults standardUserDefaults]; }

class UserDefaultsTest : public testing::Test {
protected:
    UserDefaultsTest() {
        for (NSString* key in [store() dictionaryRepresentation])
            if ([key hasPrefix:@"test."]) [store() removeObjectForKey:key];
    }
    void set(std::string_view key, const SettingValue& value) {
        EXPECT_EQ(defaults->setValue(key, value), Defaults::Verdict::stored);
    }
    std::vector<std::string> changes() {
        mainThread.runAll();
        return std::exchange(changed, {});
    }

    FakeMainThread mainThread;
    std::unique_ptr<UserDefaults> defaults = std::make_unique<UserDefaults>(&mainThread);
    std::vector<std::string> changed;
};

TEST_F(UserDefaultsTest, KeepsEachTypeBeyondTheProcessAndTakesNoneForAnother) {
    const SettingValue values[] = {false, 0.1, std::string("\xE2\x8C\x98\0T", 5),
                                   std::vector<std::string>{"net.arena.Guild-Wars-2", "", "\xE2\x8C\x98"}};
    for (const SettingValue& value : values) {
        set("test.value", value);
        EXPECT_EQ(defaults->value("test.value"), value);
    }
    // What another process would find.
    const auto name = std::string([[[NSProcessInfo processInfo] processName] UTF8String]) + ".plist";
    const auto file = std::filesystem::path(getenv("VANTOR_DEFAULTS_OF_TESTS")) / name;
    NSDictionary* const kept = [NSDictionary dictionaryWithContentsOfFile:[NSString stringWithUTF8String:file.c_str()]];
    EXPECT_EQ([[kept objectForKey:@"test.value"] count], 3U);
    EXPECT_EQ(defaults->removeValue("test.value"), Defaults::Verdict::stored);
    EXPECT_EQ(defaults->value("test.value"), std::nullopt);

    // What cannot be kept leaves the old value alone.
    set("test.value", std::string("old"));
    EXPECT_EQ(defaults->setValue("test.value", std::string("\xFF")), Defaults::Verdict::failed);
    EXPECT_EQ(defaults->setValue("test.value", std::vector<std::string>{"a", "\xFF"}), Defaults::Verdict::failed);
    EXPECT_EQ(defaults->value("test.value"), SettingValue(std::string("old")));

    const std::pair<id, std::optional<SettingValue>> stored[] = {
        {@1, 1.0}, {@"true", std::string("true")}, {@YES, true}, {@[ @"a", @1 ], std::nullopt}, {@{}, std::nullopt}};
    for (const auto& [object, value] : stored) {
        [store() setObject:object forKey:@"test.value"];
        EXPECT_EQ(defaults->value("test.value"), value) << [[object description] UTF8String];
    }
}

TEST_F(UserDefaultsTest, TellsOfEachChangeOnceOnTheMainThreadWhoeverMadeIt) {
    Subscription observer = defaults->observe([&](const std::string& key) { changed.push_back(key); });
    const Subscription other = defaults->observe([](const std::string&) {});
    set("test.bool", true);
    set("test.double", 1.0);
    EXPECT_THAT(changed, IsEmpty());
    EXPECT_THAT(changes(), UnorderedElementsAre("test.bool", "test.double"));
    set("test.bool", true);
    EXPECT_THAT(changes(), IsEmpty()) << "nothing changed";
    // A number in a boolean's place, though it is equal to it.
    [store() removeObjectForKey:@"test.bool"];
    [store() setObject:@1 forKey:@"test.bool"];
    // As another copy of the program does: it writes, and says so.
    [store() setObject:@"from elsewhere" forKey:@"test.text"];
    EXPECT_EQ(UserDefaults(nullptr).removeValue("test.nothing"), Defaults::Verdict::stored);
    EXPECT_THAT(changes(), UnorderedElementsAre("test.bool", "test.text"));
    EXPECT_EQ(defaults->removeValue("test.text"), Defaults::Verdict::stored);
    EXPECT_THAT(changes(), UnorderedElementsAre("test.text"));
    set("test.bool", false);
    defaults.reset();
    EXPECT_EQ(UserDefaults(nullptr).removeValue("test.nothing"), Defaults::Verdict::stored);
    EXPECT_THAT(changes(), IsEmpty()) << "the settings are gone";
}

}  // namespace
}  // namespace vantor
