// The keychain: what is kept, why nothing is, and who is told.

#include <gmock/gmock.h>

#include <chrono>
#include <future>

#include "Mac.h"
#include "data/SessionQueue.h"
#include "fake/FakeMainThread.h"
#include "platform/macos/SecItemKeychain.h"

namespace vantor {
namespace {

using macdouble::mac;
using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class KeychainTest : public testing::Test {
protected:
    KeychainStatus copy(std::string* data = nullptr, const char* itemClass = "generic-password") {
        return answered([&](auto answer) {
            keychain.copyMatching({itemClass, accounts.account}, Keychain::Prompt::never,
                                  [=](KeychainStatus told, const std::string& bytes) {
                                      if (data) *data = bytes;
                                      answer(told);
                                  });
        });
    }
    KeychainStatus replace(const std::string& data) {
        return answered([&](auto answer) { keychain.replace(accounts, data, answer); });
    }
    KeychainStatus answered(const std::function<void(std::function<void(KeychainStatus)>)>& ask) {
        std::vector<KeychainStatus> told;
        ask([&](KeychainStatus status) {
            macdouble::needsMainThread();
            told.push_back(status);
        });
        EXPECT_TRUE(keychain.finish(std::chrono::minutes(1)));
        mainThread.runAll();
        return told.at(0);
    }

    const KeychainItem accounts{"generic-password", "orvendel.Vantor.accounts"};
    FakeMainThread mainThread;
    SessionQueue queue;
    SecItemKeychain keychain{queue, mainThread};
};

TEST_F(KeychainTest, KeepsOneItemWithWhatWasStoredLastAndLeavesOthersAlone) {
    NSDictionary* const other = @{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"another program",
        (id)kSecValueData : [NSData data],
    };
    [mac().keychainItems addObject:other];
    EXPECT_EQ(copy(), KeychainStatus::notFound);
    const std::string last("{\"n\xC3\xA4me\":\"p\0w\"}", 14);
    for (const std::string& each : {std::string("{}"), last}) EXPECT_EQ(replace(each), KeychainStatus::done);
    EXPECT_TRUE([mac().keychainItems count] == 2 && [mac().keychainItems objectAtIndex:0] == other);
    std::string data;
    EXPECT_EQ(copy(&data), KeychainStatus::done);
    EXPECT_EQ(data, last);
    EXPECT_EQ([[[mac().keychainItems lastObject] objectForKey:(id)kSecValueData] retainCount], 1U) << "it is let go";
    EXPECT_EQ(copy(nullptr, "certificate"), KeychainStatus::notFound) << "a class that is not ours to ask for";

    mac().deleteStatus = errSecInvalidOwnerEdit;
    CaptureStderr();
    EXPECT_EQ(replace("new"), KeychainStatus::refused) << "the old one is still there";
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("another signature"));
}

TEST_F(KeychainTest, TellsWhyThereIsNothing) {
    const std::tuple<OSStatus, KeychainStatus, const char*> meanings[] = {
        {errSecItemNotFound, KeychainStatus::notFound, ""},
        {errSecInteractionNotAllowed, KeychainStatus::locked, ""},
        {errSecAuthFailed, KeychainStatus::refused, ""},
        {errSecUserCanceled, KeychainStatus::refused, ""},
        {errSecNotAvailable, KeychainStatus::unavailable, ""},
        {errSecInvalidOwnerEdit, KeychainStatus::refused, "delete \"orvendel.Vantor.accounts\""},
        {errSecMissingEntitlement, KeychainStatus::refused, "from its bundle"},
    };
    for (const auto& [status, meaning, advice] : meanings) {
        mac().copyStatus = status;
        CaptureStderr();
        EXPECT_EQ(copy(), meaning) << status;
        const std::string said = GetCapturedStderr();
        EXPECT_TRUE(said.find(advice) != std::string::npos && said.empty() == !*advice) << status << said;
    }
    mac().copyStatus = errSecSuccess;
    [mac().keychainItems addObject:@{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"orvendel.Vantor.accounts",
        (id)kSecValueData : @"no data",
    }];
    EXPECT_EQ(copy(), KeychainStatus::notFound);
}

TEST_F(KeychainTest, FinishesWhatWasAskedAndTellsNobodyWhoHasGone) {
    std::promise<void> answered;  // by the player, whom the system asks first
    mac().beforeCopying = [&answered] { answered.get_future().wait(); };
    {
        SecItemKeychain going(queue, mainThread);
        going.replace(accounts, "last words", [](KeychainStatus) { FAIL() << "nobody is left to hear it"; });
        going.copyMatching(accounts, Keychain::Prompt::never, [](KeychainStatus, const std::string&) { FAIL(); });
        EXPECT_FALSE(going.finish(std::chrono::milliseconds(10)));
        answered.set_value();
        EXPECT_TRUE(going.finish(std::chrono::minutes(1)));
    }
    EXPECT_EQ([mac().keychainItems count], 1U);
    EXPECT_EQ(mainThread.runAll(), 2U);
}

}  // namespace
}  // namespace vantor
