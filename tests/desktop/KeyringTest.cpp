// The logins in a real keyring, and in a stand-in service that locks, asks, and does not answer. Runs in
// demo/private_desktop.sh, whose bus and keyring are ours.

#include <gmock/gmock.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtWidgets/QApplication>

#include "ComesTrue.h"
#include "StandInSecretService.h"
#include "accounts/AccountsCredentials.h"
#include "platform/linux/services/SecretServiceKeychain.h"
#include "platform/qt/QtMainThread.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Accounts = AccountsCredentials::Accounts;
using Storage = AccountsCredentials::Storage;

// What the session's own tool for the bus prints.
QString onBus(const QString& object, const QString& method, const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("gdbus"),
                  QStringLiteral("call --session --dest org.freedesktop.secrets --object-path %1 --method %2")
                          .arg(object, method)
                          .split(QLatin1Char(' ')) +
                      arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

const QString secretsPath = QStringLiteral("/org/freedesktop/secrets");
const QString accountAttribute = QStringLiteral("{'account': 'orvendel.Vantor.accounts'}");
const QString bothAttributes = QStringLiteral("{'account': 'orvendel.Vantor.accounts', 'class': 'generic-password'}");

QString searched(const QString& attributes) {
    return onBus(secretsPath, QStringLiteral("org.freedesktop.Secret.Service.SearchItems"), {attributes});
}

class KeyringTest : public testing::Test {
protected:
    void load(const std::string& busName = "org.freedesktop.secrets",
              SecretServiceKeychain::Patience patience = {5s, 5s}) {
        credentials.reset();
        keychain.reset();
        qputenv("SECRET_SERVICE_BUS_NAME", QByteArray::fromStdString(busName));  // the library asks there
        keychain.emplace(mainThread, patience);
        credentials.emplace(*keychain, [this](const std::string& line) { printed.push_back(line); });
    }
    void loadAndWait(const std::string& busName = "org.freedesktop.secrets") {
        load(busName);
        ASSERT_TRUE(comesTrue([this] { return credentials->storage() != Storage::reading; }));
    }
    void save() {
        EXPECT_TRUE(credentials->save());
        ASSERT_TRUE(keychain->finish(10s));
        QApplication::processEvents();
    }

    QtMainThread mainThread;
    std::optional<SecretServiceKeychain> keychain;
    std::vector<std::string> printed;
    std::optional<AccountsCredentials> credentials;
};

TEST_F(KeyringTest, KeepsOneItemInARealKeyring) {
    loadAndWait();
    EXPECT_EQ(credentials->storage(), Storage::known);
    EXPECT_THAT(credentials->accounts(), IsEmpty());
    const Accounts accounts{{"amy", "pä\"ss\twörd 🗝"}, {"Amy", ""}, {"", "no name"}};
    for (const auto& [name, password] : accounts) {
        credentials->set(name, password);
        save();
    }
    EXPECT_TRUE(credentials->stored());
    loadAndWait();
    EXPECT_EQ(credentials->accounts(), accounts);

    // One item, found by class and account, with no attribute beside them.
    const QString found = searched(accountAttribute);
    EXPECT_EQ(found.count(QLatin1String("/collection/")), 1) << found.toStdString();
    EXPECT_EQ(searched(bothAttributes), found);
    EXPECT_EQ(onBus(found.section(QLatin1Char('\''), 1, 1), QStringLiteral("org.freedesktop.DBus.Properties.Get"),
                    {QStringLiteral("org.freedesktop.Secret.Item"), QStringLiteral("Attributes")}),
              QStringLiteral("(<%1>,)").arg(bothAttributes));

    for (const auto& [name, password] : accounts) credentials->remove(name);
    save();
    EXPECT_EQ(searched(accountAttribute).count(QLatin1String("/collection/")), 1);
    loadAndWait();
    EXPECT_EQ(credentials->storage(), Storage::known);
    EXPECT_THAT(credentials->accounts(), IsEmpty());
    EXPECT_THAT(printed, IsEmpty());
}

const std::string standIn = "orvendel.test.secrets";

class StandInKeyringTest : public KeyringTest {
protected:
    [[nodiscard]] bool saves(bool stored) {
        EXPECT_TRUE(credentials->save());
        return comesTrue([&] { return credentials->stored() == stored; });
    }

    StandInSecretService service{QString::fromStdString(standIn)};
};

TEST_F(StandInKeyringTest, AStartAsksNobodyAndTheFirstSaveUnlocksAndMerges) {
    service.arrange(R"({"amy":"a","zed":"z"})");
    service.isLocked = true;
    loadAndWait(standIn);
    EXPECT_EQ(credentials->storage(), Storage::locked);
    EXPECT_EQ(service.prompted, 0);
    EXPECT_THAT(service.calls, testing::Not(testing::Contains(QStringLiteral("Unlock"))));

    service.prompts = StandInSecretService::Prompts::dismiss;
    credentials->set("bob", "b");
    ASSERT_TRUE(saves(false));
    EXPECT_EQ(credentials->storage(), Storage::refused);
    EXPECT_EQ(service.prompted, 1);  // once for one save
    EXPECT_THAT(service.secrets(), ElementsAre(R"({"amy":"a","zed":"z"})"));

    service.prompts = StandInSecretService::Prompts::accept;
    credentials->remove("zed");
    ASSERT_TRUE(saves(true));
    EXPECT_THAT(service.secrets(), ElementsAre(R"({"amy":"a","bob":"b"})"));
    EXPECT_EQ(service.label, QString());
}

// The main thread runs on, whatever the service does: it is this one that has to answer.
TEST_F(StandInKeyringTest, WhoeverDoesNotAnswerHoldsUpNothing) {
    service.answers = false;
    load(standIn, {300ms, 300ms});
    ASSERT_TRUE(comesTrue([this] { return credentials->storage() != Storage::reading; }));
    EXPECT_EQ(credentials->storage(), Storage::unavailable);
    service.answers = true;

    // A prompt that nobody answers ends by itself, also where the service never says so, and the store goes on.
    for (const auto unanswered : {StandInSecretService::Prompts::ignore, StandInSecretService::Prompts::abandon}) {
        service.isLocked = true;
        service.prompted = 0;
        service.calls.clear();
        service.prompts = unanswered;
        service.arrange(R"({"amy":"a"})");
        load(standIn, {30s, 2s});
        ASSERT_TRUE(comesTrue([this] { return credentials->storage() == Storage::locked; }));
        credentials->set("bob", "b");
        ASSERT_TRUE(saves(false));
        EXPECT_EQ(service.prompted, 1);
        EXPECT_THAT(service.calls, testing::Contains(QStringLiteral("Dismiss")));  // taken off the screen
        EXPECT_THAT(service.secrets(), ElementsAre(R"({"amy":"a"})"));
        service.prompts = StandInSecretService::Prompts::accept;
        ASSERT_TRUE(saves(true));
        EXPECT_THAT(service.secrets(), ElementsAre(R"({"amy":"a","bob":"b"})"));
    }

    // Nor does the end of the program wait for it.
    service.answers = false;
    load(standIn, {5min, 5min});
    EXPECT_FALSE(keychain->finish(50ms));
    QElapsedTimer timer;
    timer.start();
    credentials.reset();
    keychain.reset();
    EXPECT_LT(timer.elapsed(), 60'000);
}

TEST_F(StandInKeyringTest, AServiceThatIsNotThereOrGoesAndComesBackIsOnlyUnavailable) {
    loadAndWait("orvendel.test.nobody");
    EXPECT_EQ(credentials->storage(), Storage::unavailable);
    credentials->set("amy", "a");
    ASSERT_TRUE(saves(false));

    loadAndWait(standIn);
    EXPECT_EQ(credentials->storage(), Storage::known);
    service.leave();
    credentials->set("amy", "a");
    ASSERT_TRUE(saves(false));
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "a"}}));
    service.enter();
    ASSERT_TRUE(saves(true));
    EXPECT_EQ(service.secrets().size(), 1U);
    EXPECT_THAT(printed, IsEmpty());
}

// Last: nobody can open the keyring of this desktop again.
TEST_F(KeyringTest, ALockedRealKeyringReadsAsEmptyAndIsNeverOverwritten) {
    loadAndWait();
    credentials->set("amy", "a");
    save();
    const QString collection =
        searched(accountAttribute).section(QLatin1Char('\''), 1, 1).section(QLatin1Char('/'), 0, 5);
    onBus(secretsPath, QStringLiteral("org.freedesktop.Secret.Service.Lock"),
          {QStringLiteral("['%1']").arg(collection)});
    loadAndWait();
    EXPECT_EQ(credentials->storage(), Storage::locked);
    EXPECT_THAT(credentials->accounts(), IsEmpty());
    // This desktop has nobody who could show the keyring's prompt.
    credentials->set("bob", "b");
    EXPECT_TRUE(credentials->save());
    ASSERT_TRUE(comesTrue([this] { return credentials->storage() != Storage::locked; }));
    EXPECT_FALSE(credentials->stored());
    EXPECT_EQ(credentials->accounts(), (Accounts{{"bob", "b"}}));
    EXPECT_EQ(searched(accountAttribute).count(QLatin1String("/collection/")), 1);
    EXPECT_THAT(printed, IsEmpty());
}

}  // namespace
}  // namespace vantor
