// The windows: what makes the toolkit's windows float, and where they may stand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DesktopDouble.h"
#include "ServiceCalls.h"
#include "platform/macos/NativeOverlayWindows.h"
#include "platform/macos/SystemScreens.h"

namespace vantor {
namespace {

using macdouble::serviceCalls;
using testing::ElementsAre;
using testing::IsEmpty;

// As it writes it with each change of its flags: closable, miniaturizable, resizable and small.
constexpr NSWindowStyleMask ofToolkit = 30;

class WindowsTest : public testing::Test {
protected:
    WindowsTest() { (void)serviceCalls().take(); }

    std::vector<std::string> callsFor(NSWindow* its, WindowNature nature) {
        DoubleView* const view = [[[DoubleView alloc] initInWindow:its] autorelease];
        windows.prepare(reinterpret_cast<NativeWindow>(view), nature);
        return serviceCalls().take();
    }

    NativeOverlayWindows windows;
    NSWindow* window = [[[DoubleWindow alloc] init] autorelease];
};

TEST_F(WindowsTest, EachNatureHasItsCallsInOrder) {
    EXPECT_THAT(
        callsFor(window, WindowNature::overlay),
        ElementsAre("title visibility 1", "transparent title bar 1", "opaque 0", "background of alpha 0", "button 0",
                    "hidden 1", "button 2", "hidden 1", "button 1", "hidden 1", "movable by background 1", "shadow 0",
                    "collection behaviour 2", "hides on deactivation 0"));
    EXPECT_THAT(callsFor(window, WindowNature::nonActivating),
                ElementsAre("background of alpha 0", "collection behaviour 2", "prevents activation 1", "center",
                            "movable by background 1", "hides on deactivation 0"));
    EXPECT_THAT(callsFor(window, WindowNature::floating),
                ElementsAre("background of alpha 0", "collection behaviour 2", "hides on deactivation 0"));
    EXPECT_THAT(callsFor(window, WindowNature::popup),
                ElementsAre("background of alpha 0", "collection behaviour 2", "center", "hides on deactivation 0"))
        << "the second key's popup keeps its level";
    EXPECT_THAT(callsFor(window, WindowNature::raisedPopup),
                ElementsAre("background of alpha 0", "collection behaviour 2", "center", "level 1000",
                            "hides on deactivation 0"));
}

TEST_F(WindowsTest, NoControlDragsItsWindow) {
    for (const WindowNature movable : {WindowNature::overlay, WindowNature::nonActivating}) {
        ToolkitView* const view = [[[ToolkitView alloc] initInWindow:window] autorelease];
        windows.prepare(reinterpret_cast<NativeWindow>(view), movable);
        EXPECT_FALSE([view mouseDownCanMoveWindow]);
    }
    NSView* const other = [[[NSView alloc] initWithFrame:NSZeroRect] autorelease];
    EXPECT_TRUE([other mouseDownCanMoveWindow]) << "views of other kinds are as they were";
}

TEST_F(WindowsTest, FramesAreTheSystemsToKeepAndWindowsToOrderIn) {
    DoubleView* const view = [[[DoubleView alloc] initInWindow:window] autorelease];
    const auto native = reinterpret_cast<NativeWindow>(view);
    EXPECT_TRUE(windows.keepFrame(native, "WatchedEvents"));
    windows.orderFront(native);
    EXPECT_THAT(serviceCalls().take(), ElementsAre("frame autosave name WatchedEvents", "key and front"));
    EXPECT_FALSE(windows.keepFrame(native, "taken")) << "so that the program keeps it";
}

TEST_F(WindowsTest, WithoutTheSystemsOwnWayAPanelIsNonActivatingAndStaysSo) {
    NSPanel* const panel = [[[DoublePanel alloc] init] autorelease];
    [panel setStyleMask:ofToolkit];
    EXPECT_THAT(callsFor(panel, WindowNature::nonActivating),
                ElementsAre("background of alpha 0", "collection behaviour 2", "center", "movable by background 1",
                            "hides on deactivation 0"));
    EXPECT_EQ([panel styleMask], NSUInteger { NSWindowStyleMaskNonactivatingPanel });
    [panel setStyleMask:ofToolkit];
    EXPECT_EQ([panel styleMask], NSUInteger { NSWindowStyleMaskNonactivatingPanel });
    EXPECT_THAT(callsFor(nil, WindowNature::overlay), IsEmpty());
}

TEST_F(WindowsTest, SmallWindowsAreBorderlessWhateverTheToolkitWrites) {
    for (const auto nature : {WindowNature::floating, WindowNature::nonActivating, WindowNature::popup,
                              WindowNature::raisedPopup, WindowNature::overlay}) {
        NSWindow* const its = [[[DoubleWindow alloc] init] autorelease];
        [its setStyleMask:ofToolkit];
        (void)callsFor(its, nature);
        [its setStyleMask:ofToolkit];
        EXPECT_EQ([its styleMask], nature == WindowNature::overlay ? ofToolkit : NSUInteger{0});
    }
}

TEST_F(WindowsTest, ScreensCountDownFromTheFirstOnesTop) {
    const SystemScreens screens;
    // The second stands left of the first, 100 points higher.
    macdouble::setScreens({NSMakeRect(0, 0, 1440, 900), NSMakeRect(-1920, -80, 1920, 1080)}, 0);
    EXPECT_THAT(screens.frames(), ElementsAre(Rect{0, 0, 1440, 900}, Rect{-1920, -100, 1920, 1080}));
    macdouble::setScreens({NSMakeRect(0, 0, 1440, 900), NSMakeRect(-1920, -80, 1920, 1080)}, 1);
    EXPECT_THAT(screens.frames(), ElementsAre(Rect{-1920, -100, 1920, 1080}, Rect{0, 0, 1440, 900}));
    macdouble::setScreens({NSMakeRect(0, 0, 1440, 900)}, std::nullopt);
    EXPECT_THAT(screens.frames(), ElementsAre(Rect{0, 0, 1440, 900}));
    macdouble::setScreens({}, std::nullopt);
    const auto without = screens.frames();
    ASSERT_EQ(without.size(), 1U) << "never none";
    EXPECT_GT(without[0].width * without[0].height, 0) << "there is room on it";
}

}  // namespace
}  // namespace vantor
