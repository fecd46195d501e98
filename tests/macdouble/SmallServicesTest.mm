// The pasteboard, the fonts of the player's, and the local zone with its calendar.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#import <AppKit/NSPasteboard.h>
#import <Foundation/Foundation.h>

#include <time.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "ServiceCalls.h"
#include "platform/macos/FontFiles.h"
#include "platform/macos/GeneralPasteboard.h"
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

using macdouble::serviceCalls;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(GeneralPasteboardTest, IsClearedBeforeATextIsPutOnIt) {
    GeneralPasteboard pasteboard;
    [[NSPasteboard generalPasteboard] clearContents];
    EXPECT_EQ(pasteboard.text(), "");
    serviceCalls().take();
    pasteboard.setText("\n[&BBEBAAA=]\n");
    EXPECT_THAT(serviceCalls().take(),
                ElementsAre("clearContents", "setString:\n[&BBEBAAA=]\n forType:public.utf8-plain-text"));
    EXPECT_EQ(pasteboard.text(), "\n[&BBEBAAA=]\n");
    pasteboard.setText("\xE6\xBC\xA2 \xF0\x9F\x98\x80");
    EXPECT_EQ(pasteboard.text(), "\xE6\xBC\xA2 \xF0\x9F\x98\x80");
    serviceCalls().take();
    pasteboard.setText("no UTF-8: \xFF");
    EXPECT_THAT(serviceCalls().take(), IsEmpty());
}

TEST(FontFilesTest, AreRegisteredForThisProcess) {
    const auto folder = std::filesystem::temp_directory_path() / ("fonts-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const auto write = [&](const char* name, std::string_view bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    };
    write("b.TTF", std::string_view("\0\1\0\0rest", 8));
    write("a.otf", "no font");
    write("readme.txt", "no font either");
    const auto files = fontFilesIn(folder.string());
    serviceCalls().take();
    EXPECT_EQ(registerFontFiles(files), 1U);
    EXPECT_THAT(serviceCalls().take(), ElementsAre("register a.otf scope 1", "register b.TTF scope 1"));
    // Known already, and so still there to draw with.
    EXPECT_EQ(registerFontFiles(files), 1U);
    std::filesystem::remove_all(folder);
    EXPECT_THAT(fontFilesIn(folder.string()), IsEmpty());
    EXPECT_EQ(registerFontFiles(files), 0U);
}

class ZonedClockTest : public testing::Test {
protected:
    static void travelTo(NSString* zone) { zoneOfMachine = zone; }
    ~ZonedClockTest() override {
        travelTo(@"Etc/UTC");
        [NSTimeZone resetSystemTimeZone];
    }

    ZonedClock clock;
};

TEST_F(ZonedClockTest, FollowsTheZoneAndItsSummerTime) {
    constexpr Clock::Seconds winter = 1705320059;  // 2024-01-15 12:00:59 UTC
    constexpr Clock::Seconds summer = 1721044859;  // 2024-07-15 12:00:59 UTC
    travelTo(@"Europe/Berlin");
    EXPECT_EQ(clock.utcOffsetSeconds(winter), 3600);
    EXPECT_EQ(clock.utcOffsetSeconds(summer), 7200);
    EXPECT_EQ(clock.localTime(summer), (LocalTime{14, 0, 59}));
    travelTo(@"Asia/Kolkata");
    EXPECT_EQ(clock.localTime(winter), (LocalTime{17, 30, 59}));
    EXPECT_EQ(clock.utcOffsetSeconds(winter), 19800);
    travelTo(@"America/New_York");
    EXPECT_EQ(clock.utcOffsetSeconds(winter), -18000);
    EXPECT_EQ(clock.localTime(winter), (LocalTime{7, 0, 59}));
}

TEST_F(ZonedClockTest, TellsTheMoment) {
    // Not time(): it follows the clock a tick late.
    const auto second = [] { return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()); };
    const auto before = second();
    const auto told = clock.now();
    const double precise = clock.preciseNow();
    EXPECT_GE(told, before);
    EXPECT_LE(told, second());
    EXPECT_GE(precise, static_cast<double>(told));
}

}  // namespace
}  // namespace vantor
