// The very dictionaries with which the keychain is asked, their order, and what its answers mean.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <optional>
#include <thread>

#include "KeychainDouble.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "platform/macos/SecItemKeychain.h"

namespace vantor {
namespace {

using macdouble::keychainDouble;
using testing::ElementsAre;

const KeychainItem accounts{"generic-password", "orvendel.Vantor.accounts"};

class KeychainTest : public testing::Test {
protected:
    KeychainTest() { keychainDouble().forget(); }

    KeychainStatus copy(std::string* data = nullptr) {
        std::optional<KeychainStatus> status;
        keychain.copyMatching(accounts, Keychain::Prompt::never, [&](KeychainStatus told, const std::string& bytes) {
            EXPECT_FALSE(status) << "answered twice";
            status = told;
            if (data) *data = bytes;
        });
        settle();
        return status.value();
    }
    KeychainStatus replace(const std::string& data) {
        std::optional<KeychainStatus> status;
        keychain.replace(accounts, data, [&](KeychainStatus told) { status = told; });
        settle();
        return status.value();
    }
    void settle() {
        queue.runAll();
        mainThread.runAll();
    }
    static std::vector<std::string> calls() {
        std::vector<std::string> names;
        for (const auto& question : keychainDouble().questions) names.push_back(question.call);
        return names;
    }
    static NSData* bytes(const char* text) { return [NSData dataWithBytes:text length:strlen(text)]; }

    FakeTaskQueue queue;
    FakeMainThread mainThread;
    SecItemKeychain keychain{queue, mainThread};
};

TEST_F(KeychainTest, ReadsWithTheItemsTwoAttributesAndNothingElse) {
    EXPECT_EQ(copy(), KeychainStatus::notFound);
    ASSERT_THAT(calls(), ElementsAre("copy"));
    NSDictionary* const expected = @{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"orvendel.Vantor.accounts",
        (id)kSecReturnData : (id)kCFBooleanTrue,
        (id)kSecMatchLimit : (id)kSecMatchLimitOne,
    };
    EXPECT_TRUE([keychainDouble().questions[0].dictionary isEqual:expected])
        << [[keychainDouble().questions[0].dictionary description] UTF8String];
    // A number of the same value is equal, and no boolean.
    EXPECT_EQ([keychainDouble().questions[0].dictionary objectForKey:(id)kSecReturnData], (id)kCFBooleanTrue);
}

TEST_F(KeychainTest, RemovesWithTheVeryDictionaryThatItThenAdds) {
    EXPECT_EQ(replace("{\"a\":\"b\"}"), KeychainStatus::done);
    ASSERT_THAT(calls(), ElementsAre("delete", "add"));
    NSDictionary* const expected = @{
        (id)kSecClass : (id)kSecClassGenericPassword,
        (id)kSecAttrAccount : @"orvendel.Vantor.accounts",
        (id)kSecValueData : bytes("{\"a\":\"b\"}"),
    };
    EXPECT_EQ(keychainDouble().questions[0].asked, keychainDouble().questions[1].asked) << "not a like one";
    for (const auto& question : keychainDouble().questions)
        EXPECT_TRUE([question.dictionary isEqual:expected]) << [[question.dictionary description] UTF8String];
}

TEST_F(KeychainTest, KeepsOneItemWithWhatWasStoredLast) {
    EXPECT_EQ(replace("{}"), KeychainStatus::done);
    const std::string last("{\"n\xC3\xA4me\":\"p\0w\"}", 14);
    EXPECT_EQ(replace(last), KeychainStatus::done);
    EXPECT_EQ([keychainDouble().items count], 1U);
    std::string data;
    EXPECT_EQ(copy(&data), KeychainStatus::done);
    EXPECT_EQ(data, last);
}

TEST_F(KeychainTest, AddsEvenWhereRemovingWasRefusedAndReportsWhatAddingSays) {
    ASSERT_EQ(replace("old"), KeychainStatus::done);
    keychainDouble().deleteStatus = errSecAuthFailed;
    EXPECT_EQ(replace("new"), KeychainStatus::refused);
    EXPECT_THAT(calls(), ElementsAre("delete", "add", "delete", "add"));
    std::string data;
    EXPECT_EQ(copy(&data), KeychainStatus::done);
    EXPECT_EQ(data, "old");
}

TEST_F(KeychainTest, TellsWhyThereIsNothing) {
    const std::pair<OSStatus, KeychainStatus> meanings[] = {
        {errSecItemNotFound, KeychainStatus::notFound},    {errSecInteractionNotAllowed, KeychainStatus::locked},
        {errSecAuthFailed, KeychainStatus::refused},       {errSecUserCanceled, KeychainStatus::refused},
        {errSecNotAvailable, KeychainStatus::unavailable},
    };
    for (const auto& [status, meaning] : meanings) {
        keychainDouble().copyStatus = status;
        EXPECT_EQ(copy(), meaning) << status;
    }
    keychainDouble().copyStatus = errSecSuccess;
    keychainDouble().copyResult = [@"no data" retain];
    EXPECT_EQ(copy(), KeychainStatus::notFound);
    // A class that the system does not know is not asked for.
    keychainDouble().forget();
    keychain.copyMatching({"certificate", "a"}, Keychain::Prompt::never, [](KeychainStatus status, const std::string&) {
        EXPECT_EQ(status, KeychainStatus::notFound);
    });
    settle();
    EXPECT_TRUE(calls().empty());
}

// Every task on a thread of its own, joined at the end.
struct ThreadQueue final : TaskQueue {
    ~ThreadQueue() override {
        for (std::thread& thread : threads) thread.join();
    }
    void post(std::function<void()> task) override { threads.emplace_back(std::move(task)); }

    std::vector<std::thread> threads;
};

TEST(KeychainQueue, WaitsForWhatWasAskedAndTellsNobodyWhoHasGone) {
    keychainDouble().forget();
    FakeMainThread mainThread;
    ThreadQueue queue;
    {
        SecItemKeychain keychain(queue, mainThread);
        keychain.replace(accounts, "last words", [](KeychainStatus) { FAIL() << "nobody is left to hear it"; });
        EXPECT_TRUE(keychain.finish(std::chrono::seconds(10)));
        EXPECT_EQ([keychainDouble().items count], 1U);
    }
    mainThread.runAll();

    // A question that the player does not answer.
    std::promise<void> answered;
    keychainDouble().beforeCopying = [&answered] { answered.get_future().wait(); };
    SecItemKeychain keychain(queue, mainThread);
    keychain.copyMatching(accounts, Keychain::Prompt::never, [](KeychainStatus, const std::string&) {});
    EXPECT_FALSE(keychain.finish(std::chrono::milliseconds(10)));
    answered.set_value();
    EXPECT_TRUE(keychain.finish(std::chrono::seconds(10)));
}

}  // namespace
}  // namespace vantor
