// The settings in the system's own store, in a home folder of the test's: the types that it keeps, and who hears of a
// change.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>

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
    static LocalCenter* center = [[LocalCenter alloc] init];
    return center;
}
@end

namespace vantor {
namespace {

// The user's own settings are not the tests' to change. The library learns where they lie while it is loaded, from a
// file that the environment names (HOME does not matter to it), so the process begins once more with another.
constexpr const char* variable = "VANTOR_DEFAULTS_OF_TESTS";

std::filesystem::path settingsFolder() {
    const char* const folder = getenv(variable);
    return folder ? folder : "";
}

__attribute__((constructor)) void moveSettings(int, char** arguments, char**) {
    if (getenv(variable)) return;
    char folder[] = "/tmp/vantor-defaults-XXXXXX";
    if (!mkdtemp(folder)) abort();
    const std::string file = std::string(folder) + "/places";
    std::ofstream(file) << "GNUSTEP_USER_DEFAULTS_DIR=" << folder << "\n";
    setenv("GNUSTEP_CONFIG_FILE", file.c_str(), 1);
    setenv(variable, folder, 1);
    execv("/proc/self/exe", arguments);
    abort();
}

__attribute__((destructor)) void removeSettings() {
    std::error_code none;
    if (getenv(variable)) std::filesystem::remove_all(settingsFolder(), none);
}

using testing::ElementsAre;
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
    // As another copy of the program does: it writes, and says so.
    void writeElsewhere(NSString* key, id value) {
        [store() setObject:value forKey:key];
        UserDefaults other(nullptr);
        EXPECT_EQ(other.removeValue("test.nothing"), Defaults::Verdict::stored);
    }

    FakeMainThread mainThread;
    std::unique_ptr<UserDefaults> defaults = std::make_unique<UserDefaults>(&mainThread);
};

TEST_F(UserDefaultsTest, KeepsEachTypeAsTheSystemsOwn) {
    EXPECT_EQ(defaults->value("test.unset"), std::nullopt);
    const std::vector<std::string> list{"net.arena.Guild-Wars-2", "", "\xE2\x8C\x98"};
    set("test.bool", false);
    set("test.double", 1.0);
    set("test.text", std::string("\xE2\x8C\x98 + T"));
    set("test.list", list);
    EXPECT_EQ(defaults->value("test.bool"), SettingValue(false));
    EXPECT_EQ(defaults->value("test.double"), SettingValue(1.0));
    EXPECT_EQ(defaults->value("test.text"), SettingValue(std::string("\xE2\x8C\x98 + T")));
    EXPECT_EQ(defaults->value("test.list"), SettingValue(list));
    // The system's typed getters agree, and so will whatever else reads the store.
    EXPECT_FALSE([store() boolForKey:@"test.bool"]);
    EXPECT_EQ([store() doubleForKey:@"test.double"], 1.0);
    EXPECT_EQ([[store() stringArrayForKey:@"test.list"] count], 3U);

    EXPECT_EQ(defaults->removeValue("test.text"), Defaults::Verdict::stored);
    EXPECT_EQ(defaults->value("test.text"), std::nullopt);
}

TEST_F(UserDefaultsTest, TakesNoTypeForAnother) {
    set("test.text", std::string("true"));
    EXPECT_EQ(defaults->get<bool>("test.text"), std::nullopt);
    [store() setObject:@1 forKey:@"test.number"];
    EXPECT_EQ(defaults->get<bool>("test.number"), std::nullopt);
    EXPECT_EQ(defaults->get<double>("test.number"), 1.0);
    [store() setObject:@YES forKey:@"test.yes"];
    EXPECT_EQ(defaults->get<double>("test.yes"), std::nullopt);
    EXPECT_EQ(defaults->get<bool>("test.yes"), true);
    [store() setObject:@[ @"a", @1 ] forKey:@"test.mixed"];
    EXPECT_EQ(defaults->value("test.mixed"), std::nullopt);
    [store() setObject:@{@"a" : @"b"} forKey:@"test.dictionary"];
    EXPECT_EQ(defaults->value("test.dictionary"), std::nullopt);
    EXPECT_EQ(defaults->setValue("test.text", std::string("\xFF")), Defaults::Verdict::failed);
    EXPECT_EQ(defaults->get<std::string>("test.text"), "true");
}

TEST_F(UserDefaultsTest, KeepsWhatIsWrittenBeyondTheProcess) {
    set("test.bool", true);
    set("test.double", 0.1);
    EXPECT_EQ(defaults->get<double>("test.double"), 0.1);
    // What another process would find.
    const auto name = std::string([[[NSProcessInfo processInfo] processName] UTF8String]) + ".plist";
    NSString* const file = [NSString stringWithUTF8String:(settingsFolder() / name).c_str()];
    NSDictionary* const kept = [NSDictionary dictionaryWithContentsOfFile:file];
    EXPECT_TRUE([[kept objectForKey:@"test.bool"] boolValue]) << [file UTF8String];
    EXPECT_EQ([[kept objectForKey:@"test.double"] doubleValue], 0.1);
}

TEST_F(UserDefaultsTest, TellsOfEachChangeOnceOnTheMainThreadWhoeverMadeIt) {
    std::vector<std::string> changed;
    Subscription observer = defaults->observe([&](const std::string& key) { changed.push_back(key); });
    set("test.bool", true);
    set("test.double", 1.0);
    EXPECT_THAT(changed, IsEmpty());
    mainThread.runAll();
    EXPECT_THAT(changed, UnorderedElementsAre("test.bool", "test.double"));
    changed.clear();

    set("test.bool", true);
    mainThread.runAll();
    EXPECT_THAT(changed, IsEmpty()) << "nothing changed";
    // A number in a boolean's place, though it is equal to it.
    [store() removeObjectForKey:@"test.bool"];
    [store() setObject:@1 forKey:@"test.bool"];
    writeElsewhere(@"test.text", @"from elsewhere");
    mainThread.runAll();
    EXPECT_THAT(changed, UnorderedElementsAre("test.bool", "test.text"));
    changed.clear();

    EXPECT_EQ(defaults->removeValue("test.text"), Defaults::Verdict::stored);
    mainThread.runAll();
    EXPECT_THAT(changed, ElementsAre("test.text"));
    observer.reset();
    set("test.bool", false);
    mainThread.runAll();
    EXPECT_EQ(changed.size(), 1U);
}

TEST_F(UserDefaultsTest, TellsNobodyOnceItHasGone) {
    int heard = 0;
    Subscription observer = defaults->observe([&](const std::string&) { ++heard; });
    set("test.bool", true);
    defaults.reset();
    writeElsewhere(@"test.bool", @NO);
    mainThread.runAll();
    EXPECT_EQ(heard, 0);
}

}  // namespace
}  // namespace vantor
