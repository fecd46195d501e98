// The status item as a desktop has it: on the bus, its entries read and clicked there. Runs in demo/private_desktop.sh.

#include "platform/linux/services/TrayStatusItem.h"

#include <gmock/gmock.h>

#include <memory>

#include "ComesTrue.h"
#include "StandInStatusBar.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class TrayStatusItemTest : public testing::Test {
protected:
    // The entries of a menu, those below in brackets after theirs, once they are these.
    [[nodiscard]] bool shows(const std::vector<std::string>& expected) {
        std::vector<std::string> titles;
        const bool same = comesTrue([&] {
            titles = titlesOf(bar.menu().value_or(std::vector<StatusBarEntry>()));
            return titles == expected;
        });
        EXPECT_EQ(titles, expected);
        return same;
    }
    static std::vector<std::string> titlesOf(const std::vector<StatusBarEntry>& entries) {
        std::vector<std::string> titles;
        for (const auto& entry : entries) {
            titles.push_back(entry.label + (entry.enabled ? "" : " (disabled)"));
            for (const auto& below : titlesOf(entry.entries)) titles.push_back("[" + below + "]");
        }
        return titles;
    }
    void click(const StatusBarEntry& entry) {
        const auto before = done.size();
        bar.click(entry.id);
        EXPECT_TRUE(comesTrue([&] { return done.size() > before; })) << entry.label;
    }
    MenuEntry entry(const std::string& title) {
        return MenuEntry{.title = title, .action = [this, title] { done.push_back(title); }, .submenu = {}};
    }

    StandInStatusBar bar;
    std::vector<std::string> done;
};

// One test: the toolkit asks for a status bar once in a process's life.
TEST_F(TrayStatusItemTest, IsFoundByADesktopThatComesLateAndReadAndClickedThere) {
    auto item = std::make_unique<TrayStatusItem>([] { return false; });
    auto accounts = MenuEntry{.title = "Fill credentials", .action = {}, .submenu = {}};
    accounts.submenu = {entry("R&D_x"), MenuEntry{.title = "No accounts", .action = {}, .submenu = {}}};
    const MenuEntry line{.kind = MenuEntry::Kind::separator, .title = {}, .action = {}, .submenu = {}};
    item->setMenu("Vantor", {entry("Allow on application"), accounts, line, entry("Quit")});
    item->setEntry(0, "Disable on Fish & Chips_2 & more__", true);
    EXPECT_FALSE(item->available());

    bar.enter();
    ASSERT_TRUE(shows({"Disable on Fish & Chips_2 & more__", "Fill credentials", "[R&D_x]", "[No accounts (disabled)]",
                       "-", "Quit"}));
    EXPECT_TRUE(item->available());
    const auto entries = bar.menu().value();
    click(entries[0]);
    click(entries[1].entries[0]);
    click(entries[3]);
    EXPECT_THAT(done, ElementsAre("Allow on application", "R&D_x", "Quit"));

    // Later changes reach it, and a desktop that starts anew finds the item again, as it does another item.
    item->setMenu("Vantor", {entry("Another")});
    EXPECT_TRUE(shows({"Another"}));
    item->setEntry(0, "Another", false);
    EXPECT_TRUE(shows({"Another (disabled)"}));
    bar.leave();
    bar.enter();
    EXPECT_TRUE(shows({"Another (disabled)"}));
    item = std::make_unique<TrayStatusItem>([] { return false; });
    item->setMenu("Vantor", {entry("Quit")});
    EXPECT_TRUE(shows({"Quit"}));
}

}  // namespace
}  // namespace vantor
