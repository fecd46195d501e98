// The credential store against a keychain that a test locks, refuses and holds back.

#include <gmock/gmock.h>

#include "accounts/AccountsCredentials.h"
#include "accounts/CredentialFill.h"
#include "fake/FakeKeychain.h"

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
    void store(const std::string& data) { keychain.items[{"generic-password", "orvendel.Vantor.accounts"}] = data; }
    [[nodiscard]] std::string stored() const {
        const auto found = keychain.items.find({"generic-password", "orvendel.Vantor.accounts"});
        return found == keychain.items.end() ? "none" : found->second;
    }

    FakeKeychain keychain;
    std::vector<std::string> printed;
    std::optional<AccountsCredentials> credentials;
};

TEST_F(AccountsTest, ReadsWhatIsStoredAndOnlyThatShape) {
    struct Case {
        std::optional<std::string> data;
        Accounts accounts;
        bool complains;
    };
    const std::vector<Case> cases{
        {std::nullopt, {}, false},
        {R"({"amy":"pä\"ss","Amy":"b"})", {{"amy", "pä\"ss"}, {"Amy", "b"}}, false},
        {"{}", {}, false},
        {"[]", {}, false},
        {R"({"amy":"a","zed":7})", {}, false},
        {R"({"amy":null})", {}, false},
        {"", {}, true},
        {"amy", {}, true},
        {R"({"amy":"a")", {}, true},
    };
    for (const auto& [data, accounts, complains] : cases) {
        SCOPED_TRACE(data.value_or("no item"));
        keychain.items.clear();
        printed.clear();
        if (data) store(*data);
        EXPECT_EQ(load().accounts(), accounts);
        EXPECT_EQ(credentials->storage(), Storage::known);
        if (complains)
            EXPECT_THAT(printed, ElementsAre(StartsWith("error reading credentials: ")));
        else
            EXPECT_THAT(printed, IsEmpty());
    }
}

TEST_F(AccountsTest, EverySaveRemovesAndAddsTheWholeMap) {
    load();
    credentials->set("zed", "1");
    EXPECT_TRUE(credentials->save());
    credentials->set("amy", "a\tb");
    credentials->set("zed", "2");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(keychain.calls,
                ElementsAre("copy", "remove", R"(add {"zed":"1"})", "remove", R"(add {"amy":"a\tb","zed":"2"})"));
    EXPECT_EQ(load().accounts(), (Accounts{{"amy", "a\tb"}, {"zed", "2"}}));

    credentials->remove("amy");
    credentials->remove("zed");
    credentials->remove("nobody");
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), "{}");  // the item stays
    EXPECT_EQ(keychain.items.size(), 1U);
}

TEST_F(AccountsTest, TextThatIsNoUtf8IsNotSaved) {
    store(R"({"amy":"a"})");
    load();
    credentials->set("zed", "\xff\xfe");
    keychain.calls.clear();
    EXPECT_FALSE(credentials->save());
    EXPECT_THAT(printed, ElementsAre(StartsWith("error writing credentials: ")));
    EXPECT_THAT(printed.front(), testing::Not(testing::HasSubstr("zed")));
    EXPECT_THAT(keychain.calls, IsEmpty());
    credentials->remove("zed");
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), R"({"amy":"a"})");
}

// What could not be read must not be overwritten.
TEST_F(AccountsTest, TheFirstSaveAfterALockedStartUnlocksReadsAndMerges) {
    store(R"({"amy":"old","gone":"g","zed":"z"})");
    keychain.isLocked = true;
    load();
    EXPECT_THAT(credentials->accounts(), IsEmpty());
    EXPECT_EQ(credentials->storage(), Storage::locked);
    EXPECT_THAT(printed, IsEmpty());
    int changes = 0;
    const auto subscription = credentials->observe([&] { ++changes; });

    keychain.refusesToUnlock = true;
    credentials->set("amy", "new");
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "new"}}));
    EXPECT_EQ(stored(), R"({"amy":"old","gone":"g","zed":"z"})");
    EXPECT_EQ(credentials->storage(), Storage::refused);
    EXPECT_FALSE(credentials->stored());

    keychain.refusesToUnlock = false;
    keychain.calls.clear();
    credentials->remove("gone");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(keychain.calls, ElementsAre("copy, may ask", "remove", R"(add {"amy":"new","zed":"z"})"));
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "new"}, {"zed", "z"}}));
    EXPECT_TRUE(credentials->stored());
    EXPECT_GE(changes, 3);

    // From here on it is an ordinary store.
    keychain.calls.clear();
    credentials->remove("amy");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(keychain.calls, ElementsAre("remove", R"(add {"zed":"z"})"));
}

TEST_F(AccountsTest, WithoutAServiceAChangeStaysInMemoryAndIsStoredOnceThereIsOne) {
    keychain.failing = KeychainStatus::unavailable;
    load();
    EXPECT_EQ(credentials->storage(), Storage::unavailable);
    credentials->set("amy", "a");
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "a"}}));
    EXPECT_FALSE(credentials->stored());
    keychain.failing.reset();
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), R"({"amy":"a"})");

    // Gone in mid-session: the next save that succeeds stores all of it.
    keychain.failing = KeychainStatus::locked;
    credentials->set("zed", "z");
    EXPECT_TRUE(credentials->save());
    EXPECT_FALSE(credentials->stored());
    EXPECT_EQ(stored(), R"({"amy":"a"})");
    keychain.failing.reset();
    credentials->set("bob", "b");
    EXPECT_TRUE(credentials->save());
    EXPECT_EQ(stored(), R"({"amy":"a","bob":"b","zed":"z"})");
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(AccountsTest, ChangesDuringASlowReadOrSaveAreNeitherLostNorOverlap) {
    store(R"({"amy":"a","bob":"b"})");
    keychain.holdBack = true;
    load();
    EXPECT_EQ(credentials->storage(), Storage::reading);
    credentials->set("zed", "z");
    credentials->remove("bob");
    EXPECT_TRUE(credentials->save());
    EXPECT_THAT(keychain.calls, ElementsAre("copy"));
    keychain.answerOne();  // the read; now the save is on its way
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "a"}, {"zed", "z"}}));
    EXPECT_EQ(keychain.waiting(), 1U);
    for (const char* name : {"c", "d", "e"}) {
        credentials->set(name, "");
        EXPECT_TRUE(credentials->save());
    }
    EXPECT_EQ(keychain.waiting(), 1U);
    keychain.answerAll();
    EXPECT_THAT(keychain.calls, ElementsAre("copy", "remove", R"(add {"amy":"a","zed":"z"})", "remove",
                                            R"(add {"amy":"a","c":"","d":"","e":"","zed":"z"})"));

    // A start that finds it locked while a save waits asks then.
    keychain.calls.clear();
    keychain.isLocked = true;
    load();
    credentials->set("amy", "new");
    EXPECT_TRUE(credentials->save());
    keychain.answerAll();
    EXPECT_THAT(keychain.calls,
                ElementsAre("copy", "copy, may ask", "remove", R"(add {"amy":"new","c":"","d":"","e":"","zed":"z"})"));

    // An answer after the end of the store reaches nobody.
    load();
    credentials.reset();
    keychain.answerAll();
}

TEST(CredentialFill, TypesNameTabAndPassword) {
    const Accounts accounts{{"x", "y"}, {"a\tb", " p\n"}};
    EXPECT_EQ(fillText(accounts, "x"), "x\ty");
    EXPECT_EQ(fillText(accounts, "a\tb"), "a\tb\t p\n");
    EXPECT_EQ(fillText(accounts, "gone"), "gone\t");
}

}  // namespace
}  // namespace vantor
