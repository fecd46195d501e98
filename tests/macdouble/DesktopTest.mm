// The desktop: floating windows, screens, the application in front, reduced motion, the status bar.

#include <gmock/gmock.h>

#include "Mac.h"
#include "platform/macos/NativeOverlayWindows.h"
#include "platform/macos/ReducedMotion.h"
#include "platform/macos/SharedWorkspace.h"
#include "platform/macos/StatusBarItem.h"
#include "platform/macos/SystemScreens.h"

namespace vantor {
namespace {

using macdouble::done;
using macdouble::mac;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

// As the toolkit writes it with each change of a window's flags: closable, miniaturizable, resizable and small.
constexpr NSWindowStyleMask ofToolkit = 30;

ToolkitView* viewIn(NSWindow* window) {
    ToolkitView* const view = [[[ToolkitView alloc] initWithFrame:NSZeroRect] autorelease];
    [view setWindow:window];
    return view;
}

// What a player notices of a prepared window.
std::string look(NSWindow* window, WindowNature nature) {
    ToolkitView* const view = viewIn(window);
    [window setStyleMask:ofToolkit];
    NativeOverlayWindows().prepare(reinterpret_cast<NativeWindow>(view), nature);
    std::string found = "style " + std::to_string([window styleMask]);
    [window setStyleMask:ofToolkit];
    found += ", then " + std::to_string([window styleMask]);
    const auto add = [&found](bool holds, const char* text) { found += holds ? std::string(", ") + text : ""; };
    add([[window backgroundColor] alphaComponent] == 0, "clear");
    add(![window isOpaque], "see-through");
    add(![window hasShadow], "without shadow");
    add([window titleVisibility] == NSWindowTitleHidden && [window titlebarAppearsTransparent], "without title");
    int shown = 0;
    for (NSUInteger button = 0; button < 3; ++button)
        shown += [[window standardWindowButton:static_cast<NSWindowButton>(button)] isHidden] == NO;
    add(shown == 0, "without buttons");
    add([window collectionBehavior] == (1 << 1 | 1 << 8), "follows, also over a game in its own Space");
    add(![window hidesOnDeactivate], "stays");
    add([window isMovableByWindowBackground] && ![view mouseDownCanMoveWindow], "moved by its background alone");
    add([window level] == 1000, "raised");
    add([window centered], "centred");
    add([window isKindOfClass:[ActivationWindow class]] && [(ActivationWindow*)window preventsActivation], "inactive");
    return found;
}

TEST(WindowsTest, EachNatureHasItsLook) {
    const std::string follows = ", follows, also over a game in its own Space, stays";
    const std::string moved = ", moved by its background alone";
    const std::pair<WindowNature, std::string> looks[] = {
        {WindowNature::overlay,
         "style 30, then 30, clear, see-through, without shadow, without title, without buttons" + follows + moved},
        {WindowNature::nonActivating, "style 0, then 0, clear" + follows + moved + ", centred, inactive"},
        {WindowNature::floating, "style 0, then 0, clear" + follows},
        {WindowNature::popup, "style 0, then 0, clear" + follows + ", centred"},
        {WindowNature::raisedPopup, "style 0, then 0, clear" + follows + ", raised, centred"},
    };
    for (const auto& [nature, expected] : looks)
        EXPECT_EQ(look([[[ActivationWindow alloc] init] autorelease], nature), expected);
    // Without the system's own way only a panel can be non-activating.
    EXPECT_EQ(look([[[NSPanel alloc] init] autorelease], WindowNature::nonActivating),
              "style 128, then 128, clear" + follows + moved + ", centred");
    EXPECT_TRUE([[[[NSView alloc] initWithFrame:NSZeroRect] autorelease] mouseDownCanMoveWindow])
        << "views of other kinds are as they were";
}

TEST(WindowsTest, TheListComesBackByItsTopAndIsKeptFromThenOn) {
    NSWindow* const window = [[[NSWindow alloc] init] autorelease];
    const auto native = reinterpret_cast<NativeWindow>(viewIn(window));
    NativeOverlayWindows windows;
    const NSRect first = NSMakeRect(500, 400, 250, 60);
    [window setFrame:first display:NO];
    EXPECT_FALSE(windows.keepFrame(native, "taken")) << "so that the program keeps it";
    EXPECT_TRUE(windows.keepFrame(native, "\xFF") && NSEqualRects([window frame], first)) << "nothing was kept yet";
    [mac().frames setObject:[NSValue valueWithRect:NSMakeRect(100, 200, 250, 700)] forKey:@"WatchedEvents"];
    EXPECT_TRUE(windows.keepFrame(native, "WatchedEvents"));
    EXPECT_TRUE(NSEqualRects([window frame], NSMakeRect(100, 840, 250, 60)));
    [window setFrame:first display:NO];
    EXPECT_TRUE(NSEqualRects([[mac().frames objectForKey:@"WatchedEvents"] rectValue], first));
    windows.orderFront(native);
    EXPECT_THAT(done(), ElementsAre("key and front"));
}

TEST(ScreensTest, CountDownFromTheFirstOnesTop) {
    const SystemScreens screens;
    // The second stands left of the first, 100 points higher.
    mac().screens = {NSMakeRect(0, 0, 1440, 900), NSMakeRect(-1920, -80, 1920, 1080)};
    mac().mainScreen = 1;
    EXPECT_THAT(screens.all(), ElementsAre(Screen{{-1920, -100, 1920, 1080}, {}}, Screen{{0, 0, 1440, 900}, {}}));
    mac().mainScreen.reset();
    EXPECT_THAT(screens.all(), ElementsAre(Screen{{0, 0, 1440, 900}, {}}, Screen{{-1920, -100, 1920, 1080}, {}}));
    mac().screens.clear();
    ASSERT_EQ(screens.all().size(), 1U) << "never none";
    EXPECT_GT(screens.all()[0].frame.width * screens.all()[0].frame.height, 0) << "there is room on it";
}

TEST(WorkspaceTest, TellsWhoIsInFrontAtOnceAndAtEachChangeUntilItEnds) {
    SharedWorkspace workspace;
    std::vector<std::string> seen;
    mac().setFrontmost("org.example.Game");
    auto watching =
        workspace.observeFrontmostApplication([&](const std::string& identifier) { seen.push_back(identifier); });
    EXPECT_THAT(seen, ElementsAre("org.example.Game")) << "before it returned";
    mac().setFrontmost("orvendel.Vantor");
    mac().setFrontmost("");
    mac().setFrontmost("org.example.Game");
    mac().setFrontmost(std::nullopt);
    EXPECT_THAT(seen, ElementsAre("org.example.Game", "orvendel.Vantor", "", "org.example.Game", ""));

    // One may end while it tells; not yet handed out, it goes on.
    Subscription ending;
    ending = workspace.observeFrontmostApplication([&](const std::string& identifier) {
        ending.reset();
        seen.push_back("ending " + identifier);
    });
    seen.clear();
    mac().setFrontmost("last");
    mac().setFrontmost("later");
    EXPECT_THAT(seen, UnorderedElementsAre("ending last", "last", "later"));
    watching.reset();
    mac().setFrontmost("unheard");
    EXPECT_EQ(seen.size(), 3U);
}

TEST(ReducedMotionTest, IsToldAtOnceAndAtEachChangeUntilItEnds) {
    std::vector<bool> told;
    mac().setReducesMotion(true);
    Subscription following;
    following = observeReducedMotion([&](bool reduced) {
        if (told.size() == 2) following.reset();
        told.push_back(reduced);
    });
    for (const bool reduces : {false, true, false}) mac().setReducesMotion(reduces);
    EXPECT_THAT(told, ElementsAre(true, false, true));
}

std::string text(NSMenu* menu) {
    EXPECT_FALSE([menu autoenablesItems]);
    std::string all;
    for (NSInteger each = 0; each < [menu numberOfItems]; ++each) {
        NSMenuItem* const item = [menu itemAtIndex:each];
        all += std::string([[item title] UTF8String]) + ([item isEnabled] ? ";" : " (disabled);");
        if ([item submenu]) all += " (" + text([item submenu]) + ")";
    }
    return all;
}

TEST(StatusBarTest, ShowsOneImageWithTheEntriesAndRunsWhatIsChosen) {
    std::vector<std::string> chosen;
    const auto entry = [&chosen](const std::string& title, bool enabled = true) {
        const auto choose = [&chosen, title] { chosen.push_back(title); };
        return MenuEntry{.title = title, .enabled = enabled, .action = choose, .submenu = {}};
    };
    MenuEntry logins{.title = "Fill credentials", .action = {}, .submenu = {}};
    logins.submenu = {entry("anna"), {.title = "No accounts found", .action = {}, .submenu = {}}};
    const MenuEntry line{.kind = MenuEntry::Kind::separator, .title = {}, .action = {}, .submenu = {}};

    std::optional<StatusBarItem> item(std::in_place);
    item->setEntry(0, "of no entry", true);
    EXPECT_EQ([mac().statusItems count], 0U) << "before there is a menu";
    item->setMenu("Vantor", {});
    NSStatusItem* const shown = [mac().statusItems lastObject];
    const auto at = [shown](NSInteger position) { return [[shown menu] itemAtIndex:position]; };
    item->setMenu("Vantor", {entry("Enable"), logins, line, entry("Quit", false)});
    EXPECT_EQ([mac().statusItems count], 1U) << "it stays in its place";
    EXPECT_TRUE([shown length] == -2 && [[shown button] imageScaling] == NSImageScaleProportionallyDown);
    EXPECT_TRUE([[[shown button] image] isTemplate] && ![[shown button] title]);
    item->setEntry(0, "Disable", false);
    item->setEntry(4, "beyond the end", true);
    EXPECT_EQ(text([shown menu]),
              "Disable (disabled);Fill credentials; (anna;No accounts found (disabled);)-;Quit (disabled);");
    EXPECT_TRUE([at(2) isSeparatorItem]);
    EXPECT_TRUE(mac().choose([[at(1) submenu] itemAtIndex:0]));
    EXPECT_FALSE(mac().choose([[at(1) submenu] itemAtIndex:1]) || mac().choose(at(3)));

    // An entry that replaces its own menu.
    const auto replace = [&, word = std::string("a word of its own, which went with the menu")] {
        item->setMenu("Vantor", {});
        chosen.push_back(word);
    };
    item->setMenu("Vantor", {{.title = "replace", .action = replace, .submenu = {}}});
    NSMenuItem* first = nil;
    @autoreleasepool {  // whose end lets the entry go with its menu
        first = at(0);
    }
    EXPECT_TRUE(mac().choose(first));
    EXPECT_THAT(chosen, ElementsAre("anna", "a word of its own, which went with the menu"));
    EXPECT_EQ([[shown menu] numberOfItems], 0);

    mac().bundleHasImage = false;
    item.emplace().setMenu("Vantor", {});
    EXPECT_EQ([mac().statusItems count], 1U) << "the first is gone";
    EXPECT_STREQ([[[[mac().statusItems lastObject] button] title] UTF8String], "Vantor");
}

}  // namespace
}  // namespace vantor
