// The credential store against a keychain that a test locks, refuses and holds back; the menu that fills them in, and
// the same requests from another process.

#include <gmock/gmock.h>

#include <sstream>

#include "accounts/AccountsCredentials.h"
#include "accounts/CredentialFill.h"
#include "app/StatusMenu.h"
#include "app/SystemCapability.h"
#include "app/cli/RemoteCommand.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeychain.h"
#include "fake/FakeStatusItem.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Accounts = AccountsCredentials::Accounts;
using Storage = AccountsCredentials::Storage;

class AccountsTest : public testing::Test {
protected:
    AccountsCredentials& load() {
        return credentials.emplace(keychain, [this](const std::string& line) { printed.push_back(line); });
    }
    void store(const std::string& data) { keychain.items[item] = data; }
    [[nodiscard]] std::string stored() const {
        const auto found = keychain.items.find(item);
        return found == keychain.items.end() ? "none" : found->second;
    }
    std::string saved(const std::string& username, const std::string& password) {
        credentials->set(username, password);
        EXPECT_TRUE(credentials->save());
        return stored();
    }
    // What the settings panel says: whether all is well, and the start of the sentence.
    [[nodiscard]] std::pair<bool, std::string> told() {
        FakeDefaults defaults;
        const std::vector<Capability> found{{CapabilityKind::keyring, true, "not read"}};
        const auto all = systemCapabilities(found, *credentials, defaults, [](auto) { return nullptr; });
        return {all.at(0).have, all.at(0).sentence.substr(0, 11)};
    }

    const std::pair<std::string, std::string> item{"generic-password", "orvendel.Vantor.accounts"};
    FakeKeychain keychain;
    std::vector<std::string> printed;
    std::optional<AccountsCredentials> credentials;
};

TEST_F(AccountsTest, ReadsWhatIsStoredAndOnlyThatShape) {
    const struct {
        std::optional<std::string> data;
        Accounts accounts;
        bool complains;
    } cases[] = {
        {std::nullopt, {}, false},
        {R"({"amy":"pä\"ss","Amy":"b"})", {{"amy", "pä\"ss"}, {"Amy", "b"}}, false},
        {"[]", {}, false},
        {R"({"amy":"a","zed":7})", {}, false},
        {R"({"amy":null})", {}, false},
        {"", {}, true},
        {R"({"amy":"a")", {}, true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.data.value_or("no item"));
        printed.clear();
        if (row.data) store(*row.data);
        EXPECT_EQ(load().accounts(), row.accounts);
        EXPECT_EQ(credentials->storage(), Storage::known);
        EXPECT_EQ(printed.size(), row.complains ? 1U : 0U);
        if (row.complains) {
            EXPECT_THAT(printed[0], StartsWith("error reading credentials: "));
        }
    }
}

TEST_F(AccountsTest, EverySaveStoresTheWholeMapIfItIsText) {
    load();
    EXPECT_EQ(saved("zed", "1"), R"({"zed":"1"})");
    credentials->set("amy", "a\tb");
    EXPECT_EQ(saved("zed", "2"), R"({"amy":"a\tb","zed":"2"})");
    EXPECT_EQ(load().accounts(), (Accounts{{"amy", "a\tb"}, {"zed", "2"}}));

    credentials->set("SECRET", "\xff\xfe");
    EXPECT_FALSE(credentials->save());
    EXPECT_THAT(printed, ElementsAre(StartsWith("error writing credentials: ")));
    EXPECT_THAT(printed.front(), testing::Not(testing::HasSubstr("SECRET")));
    EXPECT_EQ(stored(), R"({"amy":"a\tb","zed":"2"})");
    for (const char* name : {"SECRET", "amy", "zed", "nobody"}) credentials->remove(name);
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), "{}");  // the item stays
    // The keychain was asked to read once a start, and to remove before each addition.
    EXPECT_EQ(std::ranges::count(keychain.calls, "copy"), 2);
    EXPECT_EQ(std::ranges::count(keychain.calls, "remove"), 3);
    EXPECT_EQ(told(), std::pair(true, std::string("holds your ")));
}

// What could not be read must not be overwritten.
TEST_F(AccountsTest, TheFirstSaveAfterALockedStartUnlocksReadsAndMerges) {
    const std::string before = R"({"amy":"old","gone":"g","zed":"z"})";
    store(before);
    keychain.isLocked = true;
    load();
    EXPECT_THAT(credentials->accounts(), IsEmpty());
    EXPECT_EQ(told(), std::pair(false, std::string("locked: you")));
    int changes = 0;
    const auto subscription = credentials->observe([&] { ++changes; });

    keychain.refusesToUnlock = true;
    EXPECT_EQ(saved("amy", "new"), before);
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "new"}}));
    EXPECT_EQ(told(), std::pair(false, std::string("it stays lo")));
    EXPECT_FALSE(credentials->stored());

    keychain.refusesToUnlock = false;
    changes = 0;
    credentials->remove("gone");
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), R"({"amy":"new","zed":"z"})");
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "new"}, {"zed", "z"}}));
    EXPECT_TRUE(credentials->stored());
    EXPECT_EQ(changes, 2) << "of what was read, and that it is stored now";

    // From here on it is an ordinary store.
    keychain.calls.clear();
    credentials->remove("amy");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(keychain.calls, ElementsAre("remove", R"(add {"zed":"z"})"));
}

TEST_F(AccountsTest, WithoutAServiceAChangeStaysInMemoryAndIsStoredOnceThereIsOne) {
    keychain.failing = KeychainStatus::unavailable;
    load();
    EXPECT_EQ(saved("amy", "a"), "none");
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "a"}}));
    EXPECT_EQ(told(), std::pair(false, std::string("none answer")));
    keychain.failing.reset();
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), R"({"amy":"a"})");

    // Gone in mid-session: the next save that succeeds stores all of it.
    keychain.failing = KeychainStatus::locked;
    EXPECT_EQ(saved("zed", "z"), R"({"amy":"a"})");
    EXPECT_EQ(told(), std::pair(false, std::string("the last ch")));
    keychain.failing.reset();
    EXPECT_EQ(saved("bob", "b"), R"({"amy":"a","bob":"b","zed":"z"})");
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(AccountsTest, ChangesDuringASlowReadOrSaveAreNeitherLostNorOverlap) {
    store(R"({"amy":"a","bob":"b"})");
    keychain.holdBack = true;
    load();
    EXPECT_EQ(told(), std::pair(true, std::string("is being as")));
    credentials->remove("bob");
    saved("zed", "z");
    keychain.answerOne();  // the read; now the save is on its way
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "a"}, {"zed", "z"}}));
    for (const char* name : {"c", "d", "e"}) saved(name, "");
    EXPECT_EQ(keychain.waiting(), 1U);
    keychain.answerAll();
    EXPECT_THAT(keychain.calls, ElementsAre("copy", "remove", R"(add {"amy":"a","zed":"z"})", "remove",
                                            R"(add {"amy":"a","c":"","d":"","e":"","zed":"z"})"));

    // A start that finds it locked while a save waits asks then.
    keychain.calls.clear();
    keychain.isLocked = true;
    load();
    saved("amy", "new");
    keychain.answerAll();
    EXPECT_THAT(keychain.calls,
                ElementsAre("copy", "copy, may ask", "remove", R"(add {"amy":"new","c":"","d":"","e":"","zed":"z"})"));

    // An answer after the end of the store reaches nobody, and stores nothing.
    keychain.calls.clear();
    load();
    saved("late", "");
    credentials.reset();
    keychain.answerAll();
    EXPECT_THAT(keychain.calls, ElementsAre("copy"));
}

TEST(CredentialFill, TypesNameTabAndPassword) {
    const Accounts accounts{{"x", "y"}, {"a\tb", " p\n"}};
    EXPECT_EQ(fillText(accounts, "a\tb"), "a\tb\t p\n");
    EXPECT_EQ(fillText(accounts, "gone"), "gone\t");
}

TEST(SystemCapability, SaysWhatWorksOrWhatToDo) {
    EXPECT_EQ(plainCapability({CapabilityKind::display, true, "advice"}).sentence, "can be shown");
    EXPECT_EQ(plainCapability({CapabilityKind::display, false, "advice"}).sentence, "advice");
    // Clicks arrive by the settings too, and the player may set them right.
    FakeDefaults defaults;
    defaults.put("apps.enabled", std::vector<std::string>{"game"});
    const auto clicks = [&] { return clicksCapability({"clicks", true, "arrive"}, defaults); };
    const SystemCapability shutOut = clicks();
    EXPECT_FALSE(shutOut.have);
    for (int press = 0; press < 2; ++press) shutOut.ask();
    EXPECT_EQ(clicks(), (SystemCapability{"clicks", true, "arrive"}));
}

class StatusMenuTest : public AccountsTest {
protected:
    void launch() {
        menu.reset();
        menu.emplace(
            statusItem, load(), [this] { return ToggleEntry{title}; },
            StatusMenuActions{[this] { done.emplace_back("toggle"); },
                              [this](const std::string& name) { done.push_back("fill " + name); },
                              [this] { done.emplace_back("quit"); }});
    }
    [[nodiscard]] std::vector<std::string> submenu() const {
        std::vector<std::string> titles;
        for (const MenuEntry& entry : statusItem.menu.at(1).submenu)
            titles.push_back(entry.title + (entry.enabled ? "" : " (disabled)"));
        return titles;
    }

    const std::string hint = "No accounts found, add new in settings (disabled)";
    FakeStatusItem statusItem;
    std::string title = "Allow on application";
    std::vector<std::string> done;
    std::optional<StatusMenu> menu;
};

TEST_F(StatusMenuTest, OffersToggleFillAndQuit) {
    store(R"({"zed":"z","amy":"a","b\tc":"x"})");
    launch();
    EXPECT_THAT(statusItem.titles(), ElementsAre("Allow on application", "Fill credentials", "-", "Quit"));
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
    // Later changes show after the next start only, those that a failed save tells of as well.
    credentials->remove("amy");
    saved("zed", "z");
    keychain.answerAll();
    keychain.failing = KeychainStatus::unavailable;
    EXPECT_TRUE(credentials->save());
    keychain.answerAll();
    EXPECT_FALSE(credentials->stored());
    EXPECT_THAT(submenu(), ElementsAre("amy"));
    EXPECT_EQ(menu->entries().at(1).submenu.size(), 1U);
}

TEST_F(StatusMenuTest, AnEmptyStartStaysEmptyAndALockedOneIsFilledOnceItIsOpen) {
    launch();
    saved("new", "n");
    EXPECT_THAT(submenu(), ElementsAre(hint));

    store(R"({"amy":"a"})");
    keychain.isLocked = true;
    launch();
    EXPECT_THAT(submenu(), ElementsAre(hint));
    saved("new", "n");
    EXPECT_THAT(submenu(), ElementsAre("amy", "new"));
}

// Both sides of the wire, one line each way.
TEST_F(StatusMenuTest, AnswersWhatAnotherProcessAsksFor) {
    using What = AskRunning::What;
    std::optional<Refusal> refusal;
    std::optional<AskRunning> asked;
    const RemoteActions actions{[&](const AskRunning& command) {
                                    asked = command;
                                    return refusal;
                                },
                                [this] { done.emplace_back("quit"); }};
    const auto ask = [&](const AskRunning& command, const std::optional<RemoteReply>& answer = {}) {
        std::ostringstream errors;
        const int status = runAskRunning(
            command,
            [&](const std::string& line) -> RemoteReply {
                EXPECT_EQ(line.find('\n'), std::string::npos);
                if (answer) return *answer;
                const RemoteAnswer given = answerRequest(line, actions);
                if (given.afterwards) given.afterwards();
                return {.running = true, .line = given.line};
            },
            errors);
        return std::to_string(status) + " " + errors.str();
    };
    for (const AskRunning& command :
         {AskRunning{What::toggleApp}, AskRunning{What::fill, "a\nb %41\tß"}, AskRunning{What::readCatalogue},
          AskRunning{What::toggle}, AskRunning{What::hide}, AskRunning{What::show}, AskRunning{What::paste},
          AskRunning{What::emote, "/wave @"}, AskRunning{What::stop}}) {
        EXPECT_EQ(ask(command), "0 ");
        EXPECT_EQ(asked, command);
    }
    EXPECT_EQ(ask({What::quit}), "0 ");
    EXPECT_THAT(done, ElementsAre("quit"));
    refusal = Refusal::unknownName;
    EXPECT_EQ(ask({What::fill, "nobody"}), "1 vantor: --fill: no account of that name is stored\n");
    EXPECT_EQ(ask({What::emote, "x"}), "1 vantor: --emote: there is no such emote\n");
    refusal = Refusal::vantorInFront;
    EXPECT_EQ(ask({What::toggleApp}), "1 vantor: --toggle-app: Vantor itself is in front, which is not switched off\n");
    refusal = Refusal::notOverGame;
    EXPECT_THAT(ask({What::paste}), StartsWith("1 vantor: --paste: nothing is pasted unless"));
    EXPECT_EQ(ask({What::toggleApp}, RemoteReply{}), "1 vantor: no Vantor runs on this display\n");
    EXPECT_EQ(ask({What::quit}, RemoteReply{.running = true}), "1 vantor: the Vantor that runs does not answer\n");
    EXPECT_THAT(ask({What::quit}, RemoteReply{true, answerRequest("open the door", actions).line}),
                StartsWith("1 vantor: the Vantor that runs is another version"));
}

}  // namespace
}  // namespace vantor
