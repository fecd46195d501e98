// The menu as a value, and when its submenu is filled; the same requests from another process.

#include "app/StatusMenu.h"

#include <gmock/gmock.h>

#include <sstream>

#include "app/cli/RemoteCommand.h"
#include "fake/FakeKeychain.h"
#include "fake/FakeStatusItem.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> titlesOf(const std::vector<MenuEntry>& entries) {
    std::vector<std::string> titles;
    for (const MenuEntry& entry : entries)
        titles.push_back((entry.kind == MenuEntry::Kind::separator ? "-" : entry.title) +
                         (entry.enabled ? "" : " (disabled)"));
    return titles;
}

class StatusMenuTest : public testing::Test {
protected:
    void launch() {
        credentials.emplace(keychain, [](const std::string&) {});
        menu.emplace(
            statusItem, *credentials, [this] { return ToggleEntry{title}; },
            StatusMenuActions{[this] { done.emplace_back("toggle"); },
                              [this](const std::string& name) { done.push_back("fill " + name); },
                              [this] { done.emplace_back("quit"); }});
    }
    void store(const std::string& data) {
        keychain.items[{AccountsCredentials::keychainItem().itemClass, AccountsCredentials::keychainItem().account}] =
            data;
    }
    [[nodiscard]] std::vector<std::string> submenu() const { return titlesOf(statusItem.menu.at(1).submenu); }

    FakeKeychain keychain;
    FakeStatusItem statusItem;
    std::string title = "Allow on application";
    std::vector<std::string> done;
    std::optional<AccountsCredentials> credentials;
    std::optional<StatusMenu> menu;
};

const std::string hint = "No accounts found, add new in settings (disabled)";

TEST_F(StatusMenuTest, OffersToggleFillAndQuit) {
    store(R"({"zed":"z","amy":"a","b\tc":"x"})");
    launch();
    EXPECT_EQ(statusItem.menuTitle, "Vantor");
    EXPECT_THAT(titlesOf(statusItem.menu), ElementsAre("Allow on application", "Fill credentials", "-", "Quit"));
    EXPECT_THAT(submenu(), ElementsAre("amy", "b\tc", "zed"));
    EXPECT_FALSE(statusItem.menu.at(1).action);
    statusItem.press(toggleAppPosition);
    for (const auto& entry : statusItem.menu.at(1).submenu) entry.action();
    statusItem.press(3);
    EXPECT_THAT(done, ElementsAre("toggle", "fill amy", "fill b\tc", "fill zed", "quit"));
    title = "Disable on Guild Wars 2";
    EXPECT_EQ(menu->entries().front().title, title);  // what the icon's menu shows is always current
}

TEST_F(StatusMenuTest, FillsTheSubmenuOnceWhenTheKeychainHasTold) {
    store(R"({"amy":"a"})");
    keychain.holdBack = true;
    launch();
    EXPECT_THAT(submenu(), ElementsAre(hint));
    keychain.answerAll();
    EXPECT_THAT(submenu(), ElementsAre("amy"));
    // Later changes show after the next start only.
    credentials->set("zed", "z");
    credentials->remove("amy");
    EXPECT_TRUE(credentials->save());
    keychain.answerAll();
    // Nor do they after a save that fails, of which the store tells.
    keychain.failing = KeychainStatus::unavailable;
    EXPECT_TRUE(credentials->save());
    keychain.answerAll();
    EXPECT_FALSE(credentials->stored());
    EXPECT_THAT(submenu(), ElementsAre("amy"));
    EXPECT_THAT(titlesOf(menu->entries().at(1).submenu), ElementsAre("amy"));
}

TEST_F(StatusMenuTest, AnEmptyStartStaysEmptyAndALockedOneIsFilledOnceItIsOpen) {
    launch();
    credentials->set("new", "n");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(submenu(), ElementsAre(hint));

    store(R"({"amy":"a"})");
    keychain.isLocked = true;
    menu.reset();
    launch();
    EXPECT_THAT(submenu(), ElementsAre(hint));
    credentials->set("new", "n");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(submenu(), ElementsAre("amy", "new"));
}

// Both sides of the wire, one line each way.
TEST_F(StatusMenuTest, AnswersWhatAnotherProcessAsksFor) {
    const RemoteActions actions{[this, toggles = 0]() mutable {
                                    done.emplace_back("toggle");
                                    return ++toggles == 1;
                                },
                                [](const std::string& name) { return name != "nobody"; },
                                [this](const std::string& name) { done.push_back("fill " + name); },
                                [this] { done.emplace_back("quit"); }};
    bool running = true;
    const auto ask = [&](const AskRunning& command) {
        std::ostringstream errors;
        const int status = runAskRunning(
            command,
            [&](const std::string& line) -> RemoteReply {
                EXPECT_EQ(line.find('\n'), std::string::npos);
                if (!running) return {};
                const RemoteAnswer answer = answerRequest(line, actions);
                if (answer.afterwards) answer.afterwards();
                return {.running = true, .line = answer.line};
            },
            errors);
        return std::to_string(status) + " " + errors.str();
    };
    using What = AskRunning::What;
    EXPECT_EQ(ask({What::toggleApp}), "0 ");
    EXPECT_EQ(ask({What::fill, "a\nb %41\tß"}), "0 ");
    EXPECT_EQ(ask({What::fill, "nobody"}), "1 vantor: --fill: no account of that name is stored\n");
    EXPECT_EQ(ask({What::toggleApp}), "1 vantor: --toggle-app: Vantor itself is in front, which is not switched off\n");
    EXPECT_EQ(ask({What::quit}), "0 ");
    EXPECT_THAT(done, ElementsAre("toggle", "fill a\nb %41\tß", "toggle", "quit"));
    running = false;
    EXPECT_EQ(ask({What::toggleApp}), "1 vantor: no Vantor runs on this display\n");
    EXPECT_EQ(answerRequest("open the door", actions).line, "unknown request");
    std::ostringstream errors;
    EXPECT_EQ(runAskRunning({What::quit}, [](const std::string&) { return RemoteReply{.running = true}; }, errors), 1);
    EXPECT_EQ(errors.str(), "vantor: the Vantor that runs does not answer\n");
}

}  // namespace
}  // namespace vantor
