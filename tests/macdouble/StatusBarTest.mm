// The item in the status bar: its length and image, the menu entry by entry, and what choosing one does.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#import <AppKit/NSImage.h>
#import <AppKit/NSStatusBarButton.h>

#include "StatusBarDouble.h"
#include "platform/macos/StatusBarItem.h"

namespace vantor {
namespace {

using testing::ElementsAre;

MenuEntry entry(std::string title, std::function<void()> action = {}) {
    return {.title = std::move(title), .action = std::move(action), .submenu = {}};
}

std::vector<std::string> titles(NSMenu* menu) {
    std::vector<std::string> shown;
    for (NSInteger at = 0; at < [menu numberOfItems]; ++at) {
        NSMenuItem* const item = [menu itemAtIndex:at];
        std::string line = [item isSeparatorItem] ? "-" : [[item title] UTF8String];
        EXPECT_EQ([[item keyEquivalent] length], 0U) << line;
        shown.push_back(line + ([item isEnabled] ? "" : " (disabled)"));
    }
    return shown;
}

class StatusBarTest : public testing::Test {
protected:
    StatusBarTest() {
        macdouble::setImageInBundle(@"vantor", true);
        item = std::make_unique<StatusBarItem>();
    }
    std::vector<MenuEntry> entries(std::vector<std::string> usernames) {
        std::vector<MenuEntry> all{entry("Enable on Tyria & <Co>", [this] { chosen.emplace_back("toggle"); }),
                                   entry("Fill credentials"),
                                   {.kind = MenuEntry::Kind::separator, .title = {}, .action = {}, .submenu = {}},
                                   entry("Quit", [this] { chosen.emplace_back("quit"); })};
        for (const auto& name : usernames)
            all[1].submenu.push_back(entry(name, [this, name] { chosen.push_back(name); }));
        if (usernames.empty()) all[1].submenu.push_back(entry("No accounts found, add new in settings"));
        return all;
    }
    static NSStatusItem* shown() { return [macdouble::statusItems() lastObject]; }
    static NSMenuItem* at(NSInteger position) { return [[shown() menu] itemAtIndex:position]; }

    std::vector<std::string> chosen;
    std::unique_ptr<StatusBarItem> item;
};

TEST_F(StatusBarTest, IsOneSquareItemWithItsImageScaledDown) {
    EXPECT_EQ([macdouble::statusItems() count], 0U) << "before there is a menu";
    item->setEntry(0, "of no entry", true);
    item->setMenu("Vantor", {});
    ASSERT_EQ([macdouble::statusItems() count], 1U);
    EXPECT_EQ([shown() length], -2);
    EXPECT_EQ([[shown() button] imageScaling], 0U);
    EXPECT_STREQ([[[[shown() button] image] name] UTF8String], "vantor");
    EXPECT_TRUE(item->available());
    item.reset();
    EXPECT_EQ([macdouble::statusItems() count], 0U);

    macdouble::setImageInBundle(@"vantor", false);
    StatusBarItem bare;
    bare.setMenu("Vantor", {});
    EXPECT_STREQ([[[shown() button] title] UTF8String], "Vantor");
}

TEST_F(StatusBarTest, HoldsTheEntriesInTheirOrderWithoutKeys) {
    item->setMenu("Vantor", entries({"zoe", "anna"}));
    NSMenu* const menu = [shown() menu];
    EXPECT_STREQ([[menu title] UTF8String], "Vantor");
    EXPECT_FALSE([menu autoenablesItems]);
    EXPECT_THAT(titles(menu), ElementsAre("Enable on Tyria & <Co>", "Fill credentials", "-", "Quit"));
    EXPECT_EQ([at(1) action], nullptr);
    EXPECT_STREQ([[[at(1) submenu] title] UTF8String], "Fill credentials");
    EXPECT_THAT(titles([at(1) submenu]), ElementsAre("zoe", "anna"));

    item->setMenu("Vantor", entries({}));
    EXPECT_THAT(titles([at(1) submenu]), ElementsAre("No accounts found, add new in settings (disabled)"));
    EXPECT_EQ([[[at(1) submenu] itemAtIndex:0] action], nullptr);
}

TEST_F(StatusBarTest, RunsWhatIsChosen) {
    item->setMenu("Vantor", entries({"anna"}));
    EXPECT_TRUE(macdouble::choose(at(0)));
    EXPECT_TRUE(macdouble::choose([[at(1) submenu] itemAtIndex:0]));
    EXPECT_TRUE(macdouble::choose(at(3)));
    EXPECT_THAT(chosen, ElementsAre("toggle", "anna", "quit"));

    // An entry that replaces its own menu, and one that may not be chosen now.
    auto next = entries({});
    next[0].action = [this, word = std::string("replaced")] {
        item->setMenu("Vantor", {});
        chosen.push_back(word);  // its own, which went with the menu if nobody kept it
    };
    next[3].enabled = false;
    item->setMenu("Vantor", std::move(next));
    NSMenuItem* first = nil;
    @autoreleasepool {
        first = at(0);
        EXPECT_FALSE(macdouble::choose(at(3)));
    }
    EXPECT_TRUE(macdouble::choose(first));
    EXPECT_EQ(chosen.back(), "replaced");
    EXPECT_EQ([[shown() menu] numberOfItems], 0);
}

TEST_F(StatusBarTest, RetitlesOneEntry) {
    item->setEntry(0, "nobody has a menu yet", true);
    item->setMenu("Vantor", entries({}));
    item->setEntry(0, "Disable on Tyria", true);
    item->setEntry(4, "beyond the end", true);
    EXPECT_THAT(titles([shown() menu]), ElementsAre("Disable on Tyria", "Fill credentials", "-", "Quit"));
    EXPECT_TRUE(macdouble::choose(at(0)));
    EXPECT_THAT(chosen, ElementsAre("toggle"));
}

}  // namespace
}  // namespace vantor
