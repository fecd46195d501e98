// Runs the tests of the macOS adapters, each on a Mac of its own, and looks after each whether an object of the
// adapters or of the doubles is still alive.

#include <gmock/gmock.h>

#include <QtWidgets/QApplication>

#import <objc/runtime.h>

#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "Mac.h"

namespace macdouble {

static std::optional<Mac> current;

Mac& mac() { return *current; }
void note(std::string call) { mac().done.push_back(std::move(call)); }
std::vector<std::string> done() { return std::exchange(mac().done, {}); }
void letGo(std::initializer_list<id> owned) {
    for (const id each : owned) [each release];
}
void needsMainThread() { EXPECT_TRUE([NSThread isMainThread]) << "called on another thread"; }

namespace {

constexpr const char* settingsVariable = "VANTOR_DEFAULTS_OF_TESTS";

const void* programOf(const void* address) {
    Dl_info found;
    return dladdr(address, &found) != 0 ? found.dli_fbase : nullptr;
}

// How many there are of each class of this program; not of the library's classes, which keep some of theirs.
std::map<std::string, int> liveObjects() {
    std::map<std::string, int> live;
    for (const Class* each = GSDebugAllocationClassList(); *each; ++each)
        if (programOf(*each) == programOf(settingsVariable)) live[class_getName(*each)] = GSDebugAllocationCount(*each);
    std::erase_if(live, [](const auto& each) { return each.second == 0; });
    return live;
}

class MacListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        pool_ = [[NSAutoreleasePool alloc] init];
        current.emplace();
        mac().setFrontmost(std::nullopt);
        // Once made, these stay.
        (void)[NSApplication sharedApplication];
        (void)[NSStatusBar systemStatusBar], (void)[NSDistributedNotificationCenter defaultCenter];
        before_ = liveObjects();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        mac().setFrontmost(std::nullopt);
        [pool_ release];
        EXPECT_EQ(liveObjects(), before_) << "an object is left";
    }

    NSAutoreleasePool* pool_ = nil;
    std::map<std::string, int> before_;
};

// The user's own settings are not the tests' to change. The library learns where they lie while it is loaded, from a
// file that the environment names (HOME does not matter to it), so the process begins once more with another.
void moveSettings(char** arguments) {
    char folder[] = "/tmp/vantor-defaults-XXXXXX";
    if (!mkdtemp(folder)) abort();
    const std::string file = std::string(folder) + "/places";
    std::ofstream(file) << "GNUSTEP_USER_DEFAULTS_DIR=" << folder << "\n";
    setenv("GNUSTEP_CONFIG_FILE", file.c_str(), 1);
    setenv("XDG_DATA_HOME", folder, 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_LOGGING_RULES", "default.warning=false", 1);  // a foreign window is not to be had there
    setenv(settingsVariable, folder, 1);
    execv("/proc/self/exe", arguments);
    abort();
}

}  // namespace
}  // namespace macdouble

// The libraries keep what they have made for the process.
extern "C" const char* __lsan_default_suppressions() { return "leak:libgnustep-base\nleak:libobjc\n"; }
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }

int main(int count, char** arguments) {
    if (!getenv(macdouble::settingsVariable)) macdouble::moveSettings(arguments);
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    kCFBooleanTrue = (CFBooleanRef)[[NSNumber numberWithBool:YES] retain];
    kCFBooleanFalse = (CFBooleanRef)[[NSNumber numberWithBool:NO] retain];
    GSDebugAllocationActive(YES);
    testing::InitGoogleMock(&count, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new macdouble::MacListener);
    const QApplication application(count, arguments);
    const int status = RUN_ALL_TESTS();
    [pool release];
    std::filesystem::remove_all(getenv(macdouble::settingsVariable));
    return status;
}
