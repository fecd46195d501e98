// What the system keeps for all programs: permissions, keychain, pasteboard, fonts, the zone.

#include <gmock/gmock.h>

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>

#include "Mac.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeTaskQueue.h"
#include "platform/macos/FontFiles.h"
#include "platform/macos/GeneralPasteboard.h"
#include "platform/macos/PrivacyPermissions.h"
#include "platform/macos/SecItemKeychain.h"
#include "platform/macos/SystemCapabilities.h"
#include "platform/macos/ZonedClock.h"

static NSString* zoneOfMachine = @"Etc/UTC";
static NSString* zoneThatIsKnown = @"Etc/UTC";

// As the system does, the class goes on with the zone that it knows until it is told to look again.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
@implementation NSTimeZone (OfATraveller)
+ (void)resetSystemTimeZone {
    zoneThatIsKnown = zoneOfMachine;
}
+ (NSTimeZone*)systemTimeZone {
    return [NSTimeZone timeZoneWithName:zoneThatIsKnown];
}
@end
#pragma clang diagnostic pop

namespace vantor {
namespace {

using macdouble::done;
using macdouble::mac;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class PermissionsTest : public testing::Test {
protected:
    using Kind = Permissions::Kind;

    void allow(bool trusted, IOHIDAccessType listening) {
        mac().trusted = trusted;
        mac().listening = listening;
    }
    void look() { scheduler.advance(PrivacyPermissions::between); }

    FakeScheduler scheduler;
    PrivacyPermissions permissions{scheduler};
};

TEST_F(PermissionsTest, TellsWhatIsMissingWithoutAskingAndAsksWhenTold) {
    const auto raw = [this] { return examineCapabilities(permissions)[0]; };
    const auto posting = [this] { return examineCapabilities(permissions)[1]; };
    allow(false, kIOHIDAccessTypeUnknown);
    EXPECT_FALSE(raw().present || posting().present);
    EXPECT_THAT(raw().advice, HasSubstr("Input Monitoring and Accessibility"));
    EXPECT_THAT(posting().advice, HasSubstr("Accessibility"));
    allow(false, kIOHIDAccessTypeGranted);
    EXPECT_FALSE(raw().present || posting().present);
    EXPECT_THAT(raw().advice, Not(HasSubstr("Input Monitoring")));
    allow(true, kIOHIDAccessTypeDenied);
    EXPECT_TRUE(!raw().present && posting().present);
    EXPECT_THAT(raw().advice, HasSubstr("may work in Vantor's own windows only"));
    EXPECT_THAT(raw().advice, Not(HasSubstr("Accessibility")));
    allow(true, kIOHIDAccessTypeGranted);
    EXPECT_TRUE(raw().present && posting().present);
    EXPECT_THAT(done(), IsEmpty());
    permissions.ask(Kind::pressKeys);
    permissions.ask(Kind::hearKeys);
    EXPECT_THAT(done(), ElementsAre("ask for accessibility", "ask for listening"));
}

TEST_F(PermissionsTest, TellsOfAChangeWhileSomebodyListens) {
    allow(false, kIOHIDAccessTypeUnknown);
    int changes = 0;
    auto listening = permissions.observe([&] { ++changes; });
    const auto other = permissions.observe([] {});
    look();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(scheduler.waiting(), 1U) << "one look for both";
    for (const bool trusted : {true, true, true, false}) {
        allow(trusted, kIOHIDAccessTypeUnknown);
        look();
    }
    EXPECT_EQ(changes, 2);
    listening.reset();
    look();
    EXPECT_EQ(scheduler.waiting(), 1U);
}

TEST_F(PermissionsTest, LooksAtNothingWhileNobodyListens) {
    allow(false, kIOHIDAccessTypeUnknown);
    permissions.observe([] {}).reset();
    look();
    EXPECT_EQ(scheduler.waiting(), 0U);
    allow(true, kIOHIDAccessTypeUnknown);
    int changes = 0;
    const auto listening = permissions.observe([&] { ++changes; });
    look();
    EXPECT_EQ(changes, 0) << "a change that nobody listened to is none now";
}

class KeychainTest : public testing::Test {
protected:
    KeychainStatus copy(std::string* data = nullptr, const char* itemClass = "generic-password") {
        return answered([&](auto answer) {
            keychain.copyMatching({itemClass, accounts.account}, Keychain::Prompt::never,
                                  [=](KeychainStatus told, const std::string& bytes) {
                                      if (data) *data = bytes;
                                      answer(told);
                                  });
        });
    }
    KeychainStatus replace(const std::string& data) {
        return answered([&](auto answer) { keychain.replace(accounts, data, answer); });
    }
    KeychainStatus answered(const std::function<void(std::function<void(KeychainStatus)>)>& ask) {
        std::vector<KeychainStatus> told;
        ask([&](KeychainStatus status) { told.push_back(status); });
        queue.runAll();
        EXPECT_THAT(told, IsEmpty()) << "answered on the queue's thread";
        mainThread.runAll();
        EXPECT_EQ(told.size(), 1U);
        return told.at(0);
    }

    const KeychainItem accounts{"generic-password", "orvendel.Vantor.accounts"};
    FakeTaskQueue queue;
    FakeMainThread mainThread;
    SecItemKeychain keychain{queue, mainThread};
};

TEST_F(KeychainTest, KeepsOneItemWithWhatWasStoredLastAndLeavesOthersAlone) {
    NSDictionary* const other = @{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"another program",
        (id)kSecValueData : [NSData data],
    };
    [mac().keychainItems addObject:other];
    EXPECT_EQ(copy(), KeychainStatus::notFound);
    const std::string last("{\"n\xC3\xA4me\":\"p\0w\"}", 14);
    for (const std::string& each : {std::string("{}"), last}) EXPECT_EQ(replace(each), KeychainStatus::done);
    EXPECT_EQ([mac().keychainItems count], 2U);
    EXPECT_EQ([mac().keychainItems objectAtIndex:0], other);
    std::string data;
    EXPECT_EQ(copy(&data), KeychainStatus::done);
    EXPECT_EQ(data, last);
    EXPECT_EQ([[[mac().keychainItems lastObject] objectForKey:(id)kSecValueData] retainCount], 1U) << "it is let go";
    EXPECT_EQ(copy(nullptr, "certificate"), KeychainStatus::notFound) << "a class that is not ours to ask for";

    mac().deleteStatus = errSecAuthFailed;
    EXPECT_EQ(replace("new"), KeychainStatus::refused) << "the old one is still there";
}

TEST_F(KeychainTest, TellsWhyThereIsNothing) {
    const std::pair<OSStatus, KeychainStatus> meanings[] = {
        {errSecItemNotFound, KeychainStatus::notFound},    {errSecInteractionNotAllowed, KeychainStatus::locked},
        {errSecAuthFailed, KeychainStatus::refused},       {errSecUserCanceled, KeychainStatus::refused},
        {errSecNotAvailable, KeychainStatus::unavailable},
    };
    for (const auto& [status, meaning] : meanings) {
        mac().copyStatus = status;
        EXPECT_EQ(copy(), meaning) << status;
    }
    mac().copyStatus = errSecSuccess;
    [mac().keychainItems addObject:@{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"orvendel.Vantor.accounts",
        (id)kSecValueData : @"no data",
    }];
    EXPECT_EQ(copy(), KeychainStatus::notFound);
}

// Every task on a thread of its own, joined at the end.
struct ThreadQueue final : TaskQueue {
    ~ThreadQueue() override {
        for (std::thread& thread : threads) thread.join();
    }
    void post(std::function<void()> task) override { threads.emplace_back(std::move(task)); }

    std::vector<std::thread> threads;
};

TEST_F(KeychainTest, FinishesWhatWasAskedAndTellsNobodyWhoHasGone) {
    ThreadQueue threads;
    std::promise<void> answered;  // by the player, whom the system asks first
    mac().beforeCopying = [&answered] { answered.get_future().wait(); };
    {
        SecItemKeychain going(threads, mainThread);
        going.replace(accounts, "last words", [](KeychainStatus) { FAIL() << "nobody is left to hear it"; });
        EXPECT_TRUE(going.finish(std::chrono::minutes(1)));
        EXPECT_EQ([mac().keychainItems count], 1U);
        going.copyMatching(accounts, Keychain::Prompt::never, [](KeychainStatus, const std::string&) { FAIL(); });
        EXPECT_FALSE(going.finish(std::chrono::milliseconds(10)));
        answered.set_value();
        EXPECT_TRUE(going.finish(std::chrono::minutes(1)));
    }
    EXPECT_EQ(mainThread.runAll(), 2U);
}

TEST(PasteboardTest, HasWhatWasPutOnItLast) {
    GeneralPasteboard pasteboard;
    for (const std::string text : {"\n[&BBEBAAA=]\n", "\xE6\xBC\xA2 \xF0\x9F\x98\x80"}) {
        pasteboard.setText(text);
        EXPECT_EQ(pasteboard.text(), text);
    }
    pasteboard.setText("no UTF-8: \xFF");
    EXPECT_EQ(pasteboard.text(), "\xE6\xBC\xA2 \xF0\x9F\x98\x80");
}

TEST(FontFilesTest, AreRegisteredForThisProcess) {
    const auto folder = std::filesystem::temp_directory_path() / ("fonts-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string_view font("\0\1\0\0rest", 8);
    for (const auto& [name, bytes] : {std::pair("b.TTF", font), {"a.otf", "no font"}, {"c.otf", font}, {"d.txt", font}})
        std::ofstream(folder / name, std::ios::binary) << bytes;
    const auto files = fontFilesIn(folder.string());
    EXPECT_EQ(registerFontFiles(files), 2U);
    EXPECT_EQ(registerFontFiles(files), 2U) << "known already, and so still there to draw with";
    std::filesystem::remove_all(folder);
    EXPECT_THAT(fontFilesIn(folder.string()), IsEmpty());
    EXPECT_EQ(registerFontFiles(files), 0U);
}

TEST(ZonedClockTest, FollowsTheZoneAndItsSummerTime) {
    const ZonedClock clock;
    constexpr Clock::Seconds winter = 1705320059;  // 2024-01-15 12:00:59 UTC
    constexpr Clock::Seconds summer = 1721044859;  // 2024-07-15 12:00:59 UTC
    zoneOfMachine = @"Europe/Berlin";
    EXPECT_EQ(clock.utcOffsetSeconds(winter), 3600);
    EXPECT_EQ(clock.utcOffsetSeconds(summer), 7200);
    EXPECT_EQ(clock.localTime(summer), (LocalTime{14, 0, 59}));
    zoneOfMachine = @"Asia/Kolkata";
    EXPECT_EQ(clock.localTime(winter), (LocalTime{17, 30, 59}));
    zoneOfMachine = @"Etc/UTC";
    EXPECT_EQ(clock.utcOffsetSeconds(winter), 0);
    // Not time(): it follows the clock a tick late.
    const auto second = [] { return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()); };
    const auto before = second();
    const auto told = clock.now();
    EXPECT_TRUE(told >= before && told <= second());
    EXPECT_GE(clock.preciseNow(), static_cast<double>(told));
}

}  // namespace
}  // namespace vantor
