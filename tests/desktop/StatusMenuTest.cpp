// The status menu as a desktop has it: the item on the bus, its entries read and clicked there; the panel's own window
// in front; and the commands that another process gives. Runs in demo/private_desktop.sh.

#include "app/StatusMenu.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <thread>

#include "ComesTrue.h"
#include "StandInStatusBar.h"
#include "fake/FakeKeychain.h"
#include "platform/linux/desktop/XcbWorkspace.h"
#include "platform/linux/services/TrayStatusItem.h"
#include "platform/qt/SingleInstance.h"

namespace vantor {
namespace {

using testing::ElementsAre;

std::vector<std::string> titlesOf(const std::vector<StatusBarEntry>& entries) {
    std::vector<std::string> titles;
    for (const auto& entry : entries) titles.push_back(entry.label + (entry.enabled ? "" : " (disabled)"));
    return titles;
}

// The first test of this file: the toolkit asks for a status bar once in a process's life.
TEST(StatusBarThatComesLate, FindsTheItemWithItsMenu) {
    StandInStatusBar bar(StandInStatusBar::Start::later);
    bool displayTray = false;
    TrayStatusItem item([&] { return displayTray; });
    std::vector<std::string> done;
    const auto entry = [&](const std::string& name) {
        return MenuEntry{.title = name, .action = [&done, name] { done.push_back(name); }, .submenu = {}};
    };
    item.setMenu("Vantor", {entry("Allow on application"), entry("Quit")});
    item.setTitle(0, "Disable on Fish");
    EXPECT_FALSE(item.available());

    bar.start();
    ASSERT_TRUE(comesTrue([&] { return !bar.items().isEmpty() && bar.menuOf(bar.items().constLast()); }));
    EXPECT_TRUE(item.available());
    const auto entries = bar.menuOf(bar.items().constLast()).value_or(std::vector<StatusBarEntry>());
    ASSERT_THAT(titlesOf(entries), ElementsAre("Disable on Fish", "Quit"));
    bar.click(bar.items().constLast(), entries[1].id);
    ASSERT_TRUE(comesTrue([&] { return !done.empty(); }));
    EXPECT_THAT(done, ElementsAre("Quit"));

    // Later changes reach it as they reach one that was there from the start.
    item.setMenu("Vantor", {entry("Another")});
    EXPECT_TRUE(comesTrue([&] {
        const auto now = bar.menuOf(bar.items().constLast());
        return now && titlesOf(*now) == std::vector<std::string>{"Another"};
    }));
}

class StatusMenuOnTheBus : public testing::Test {
protected:
    void launch() {
        item = std::make_unique<TrayStatusItem>();
        credentials.emplace(keychain, [](const std::string&) {});
        menu.emplace(
            *item, *credentials, [this] { return title; },
            StatusMenuActions{[this] { done.emplace_back("toggle"); },
                              [this](const std::string& name) { done.push_back("fill " + name); },
                              [this] { done.emplace_back("quit"); }});
        // The toolkit registers the item before it shows the item's menu on the bus.
        ASSERT_TRUE(comesTrue([this] { return !bar.items().isEmpty() && bar.menuOf(bar.items().constLast()); }))
            << "the item does not register with a menu";
    }
    [[nodiscard]] std::vector<StatusBarEntry> read() {
        const auto entries = bar.menuOf(bar.items().constLast());
        EXPECT_TRUE(entries);
        return entries.value_or(std::vector<StatusBarEntry>());
    }
    void click(const StatusBarEntry& entry) {
        const auto before = done.size();
        bar.click(bar.items().constLast(), entry.id);
        EXPECT_TRUE(comesTrue([&] { return done.size() > before; })) << entry.label;
    }

    StandInStatusBar bar;
    FakeKeychain keychain;
    std::string title = "Allow on application";
    std::vector<std::string> done;
    std::unique_ptr<TrayStatusItem> item;
    std::optional<AccountsCredentials> credentials;
    std::optional<StatusMenu> menu;
};

TEST_F(StatusMenuOnTheBus, IsReadAndClickedByTheDesktop) {
    launch();
    auto entries = read();
    ASSERT_THAT(titlesOf(entries), ElementsAre("Allow on application", "Fill credentials", "-", "Quit"));
    EXPECT_THAT(titlesOf(entries[1].entries), ElementsAre("No accounts found, add new in settings (disabled)"));
    click(entries[0]);
    click(entries[3]);
    EXPECT_THAT(done, ElementsAre("toggle", "quit"));

    item->setTitle(toggleAppPosition, "Disable on Fish & Chips_2 & more__");
    ASSERT_TRUE(comesTrue([&] { return read()[0].label != "Allow on application"; }));
    EXPECT_EQ(read()[0].label, "Disable on Fish & Chips_2 & more__");

    // The accounts come late, as from a real keyring.
    menu.reset();
    item.reset();
    done.clear();
    keychain.items[{AccountsCredentials::keychainItem().itemClass, AccountsCredentials::keychainItem().account}] =
        R"({"amy":"a","R&D_x":"z"})";
    keychain.holdBack = true;
    launch();
    keychain.answerAll();
    ASSERT_TRUE(comesTrue([&] { return read()[1].entries.size() == 2; }));
    entries = read();
    EXPECT_THAT(titlesOf(entries[1].entries), ElementsAre("R&D_x", "amy"));
    for (const auto& entry : entries[1].entries) click(entry);
    EXPECT_THAT(done, ElementsAre("fill R&D_x", "fill amy"));

    // A desktop that starts anew finds the item again.
    bar.restart();
    ASSERT_TRUE(comesTrue([this] { return !bar.items().isEmpty(); }));
    EXPECT_THAT(titlesOf(read()), ElementsAre("Allow on application", "Fill credentials", "-", "Quit"));
}

TEST(StatusBarWindow, IsNeverTheFrontmostApplication) {
    QWidget game;
    game.setWindowTitle(QStringLiteral("game"));
    QWidget panel;
    game.show();
    ASSERT_TRUE(comesTrue([&] { return game.windowHandle() && game.windowHandle()->isExposed(); }));
    const auto activate = [](const QWidget& window) {
        XcbDesktop::connect()->requestActivation(static_cast<xcb_window_t>(window.winId()));
    };
    const auto active = [] { return XcbDesktop::connect()->activeWindow(); };
    activate(game);
    ASSERT_TRUE(comesTrue([&] { return active() == game.winId(); }));

    // Another process number: these are not Vantor's own windows.
    XcbWorkspace workspace(XcbDesktop::connect(), [](const std::string&) { return std::optional<DesktopEntry>(); }, 1);
    std::vector<std::string> seen;
    const auto watching =
        workspace.observeFrontmostApplication([&](const std::string& identifier) { seen.push_back(identifier); });
    ASSERT_EQ(seen.size(), 1U);
    panel.show();
    ASSERT_TRUE(comesTrue([&] { return panel.windowHandle() && panel.windowHandle()->isExposed(); }));
    // A desktop's panel, and of another application than the game.
    auto desktop = XcbDesktop::connect();
    desktop->setNumbers(static_cast<xcb_window_t>(panel.winId()), desktop->atoms().netWmWindowType, XCB_ATOM_ATOM,
                        {desktop->atoms().netWmWindowTypeDock});
    const std::string panelClass("panel\0panel\0", 12);
    xcb_change_property(desktop->connection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(panel.winId()),
                        XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(panelClass.size()),
                        panelClass.data());
    // What a panel with an open menu makes of itself on some desktops.
    desktop->setNumbers(desktop->root(), desktop->atoms().netActiveWindow, XCB_ATOM_WINDOW,
                        {static_cast<std::uint32_t>(panel.winId())});
    desktop->flush();
    ASSERT_TRUE(comesTrue([&] { return active() == panel.winId(); }));
    const auto deadline = QDeadlineTimer(400);
    (void)comesTrue([&] { return deadline.hasExpired(); });
    EXPECT_EQ(seen.size(), 1U) << seen.back();
}

TEST(RunningInstance, DoesWhatAnotherProcessAsksAndAnswers) {
    const QString name = QStringLiteral("vantor-remote-test.socket");
    const auto request = [&](const std::string& line) {
        std::optional<SingleInstance::Reply> reply;
        std::thread asking([&] { reply = SingleInstance::request(name, line); });
        std::atomic<bool> over = false;
        std::thread joining([&] {
            asking.join();
            over = true;
        });
        EXPECT_TRUE(comesTrue([&] { return over.load(); }));
        joining.join();
        return *reply;
    };
    EXPECT_FALSE(request("toggle-app").running);

    int opened = 0;
    std::vector<std::string> asked;
    SingleInstance running([&] { ++opened; });
    ASSERT_EQ(running.claim(name), SingleInstance::Role::first);
    running.answerWith([&](const std::string& line) {
        asked.push_back(line);
        return SingleInstance::Answer{.line = "done", .afterwards = [&] { asked.emplace_back("afterwards"); }};
    });
    const auto reply = request("fill a%0Ab");
    EXPECT_TRUE(reply.running);
    EXPECT_EQ(reply.line, "done");
    ASSERT_TRUE(comesTrue([&] { return asked.size() == 2; }));
    EXPECT_THAT(asked, ElementsAre("fill a%0Ab", "afterwards"));
    EXPECT_EQ(opened, 0);
}

}  // namespace
}  // namespace vantor
