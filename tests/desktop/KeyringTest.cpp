// The logins in a real keyring, and in a stand-in service that locks, asks, and does not answer. Runs in
// demo/private_desktop.sh, whose bus and keyring are ours.

#include <gmock/gmock.h>
#include <unistd.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtDBus/QDBusInterface>
#include <QtDBus/QDBusReply>
#include <QtWidgets/QApplication>
#include <algorithm>

#include "ComesTrue.h"
#include "StandInSecretService.h"
#include "accounts/AccountsCredentials.h"
#include "platform/linux/services/Doctor.h"
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
QString busctl(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("gdbus"),
                  QStringList{QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                              QStringLiteral("org.freedesktop.secrets"), QStringLiteral("--object-path")} +
                      arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

const QString secretsPath = QStringLiteral("/org/freedesktop/secrets");
const QString accountAttribute = QStringLiteral("{'account': 'orvendel.Vantor.accounts'}");

QString searched(const QString& attributes) {
    return busctl({secretsPath, QStringLiteral("--method"),
                   QStringLiteral("org.freedesktop.Secret.Service.SearchItems"), attributes})
        .trimmed();
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
    EXPECT_EQ(searched(QStringLiteral("{'account': 'orvendel.Vantor.accounts', 'class': 'generic-password'}")), found);
    const QString item = found.section(QLatin1Char('\''), 1, 1);
    EXPECT_EQ(busctl({item, QStringLiteral("--method"), QStringLiteral("org.freedesktop.DBus.Properties.Get"),
                      QStringLiteral("org.freedesktop.Secret.Item"), QStringLiteral("Attributes")})
                  .trimmed()
                  .toStdString(),
              "(<{'account': 'orvendel.Vantor.accounts', 'class': 'generic-password'}>,)");

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
    [[nodiscard]] std::vector<std::string> secrets() const {
        std::vector<std::string> found;
        for (const auto& [path, secret] : service.items) found.push_back(secret.toStdString());
        return found;
    }
    void arrange(const char* secret) {
        service.items[QStringLiteral("/org/freedesktop/secrets/collection/one/0")] = secret;
    }
    [[nodiscard]] bool settled() {
        return comesTrue([this] { return !busy(); });
    }
    [[nodiscard]] bool busy() { return !keychain->finish(0ms); }

    StandInSecretService service{QString::fromStdString(standIn)};
};

TEST_F(StandInKeyringTest, AStartAsksNobodyAndTheFirstSaveUnlocksAndMerges) {
    arrange(R"({"amy":"a","zed":"z"})");
    service.isLocked = true;
    loadAndWait(standIn);
    EXPECT_EQ(credentials->storage(), Storage::locked);
    EXPECT_EQ(service.prompted, 0);
    EXPECT_THAT(service.calls, testing::Not(testing::Contains(QStringLiteral("Unlock"))));

    service.prompts = StandInSecretService::Prompts::dismiss;
    credentials->set("bob", "b");
    EXPECT_TRUE(credentials->save());
    ASSERT_TRUE(comesTrue([this] { return !credentials->stored(); }));
    EXPECT_EQ(credentials->storage(), Storage::refused);
    EXPECT_EQ(service.prompted, 1);  // once for one save
    EXPECT_THAT(secrets(), ElementsAre(R"({"amy":"a","zed":"z"})"));

    service.prompts = StandInSecretService::Prompts::accept;
    credentials->remove("zed");
    EXPECT_TRUE(credentials->save());
    ASSERT_TRUE(comesTrue([this] { return credentials->stored(); }));
    EXPECT_THAT(secrets(), ElementsAre(R"({"amy":"a","bob":"b"})"));
    EXPECT_EQ(service.attributes,
              (QMap<QString, QString>{{QStringLiteral("class"), QStringLiteral("generic-password")},
                                      {QStringLiteral("account"), QStringLiteral("orvendel.Vantor.accounts")}}));
    EXPECT_EQ(service.label, QString());
}

TEST_F(StandInKeyringTest, TheDiagnosisNamesOneThatHasItsNameAndNeverAnswers) {
    const auto keyringRow = [](const std::string& name) {
        for (const Capability& each :
             examineCapabilities({.webModule = {}, .guardian = {}, .asksServices = true, .keyring = name}))
            if (each.kind == CapabilityKind::keyring) return each;
        return Capability{};
    };
    EXPECT_TRUE(keyringRow("org.freedesktop.secrets").present);
    const Capability silent = keyringRow(standIn);  // nobody turns its event loop meanwhile
    EXPECT_FALSE(silent.present);
    EXPECT_TRUE(silent.advice.starts_with("keyring does not answer")) << silent.advice;
}

// The main thread runs on, whatever the service does.
TEST_F(StandInKeyringTest, WhoeverDoesNotAnswerHoldsUpNothing) {
    QElapsedTimer timer;
    timer.start();
    service.answers = false;
    load(standIn, {300ms, 300ms});
    const auto returned = timer.elapsed();
    ASSERT_TRUE(comesTrue([this] { return credentials->storage() != Storage::reading; }));
    EXPECT_EQ(credentials->storage(), Storage::unavailable);
    EXPECT_GE(timer.elapsed(), 300);
    EXPECT_LT(returned, 300);

    // A prompt that nobody answers ends by itself, also where the service never says so, and the store goes on.
    for (const auto unanswered : {StandInSecretService::Prompts::ignore, StandInSecretService::Prompts::abandon}) {
        service.answers = true;
        service.isLocked = true;
        service.prompted = 0;
        service.calls.clear();
        service.prompts = unanswered;
        service.items.clear();
        arrange(R"({"amy":"a"})");
        load(standIn, {5s, 300ms});
        ASSERT_TRUE(comesTrue([this] { return credentials->storage() == Storage::locked; }));
        credentials->set("bob", "b");
        EXPECT_TRUE(credentials->save());
        ASSERT_TRUE(comesTrue([this] { return !credentials->stored(); }));
        EXPECT_EQ(service.prompted, 1);
        EXPECT_THAT(service.calls, testing::Contains(QStringLiteral("Dismiss")));  // taken off the screen
        EXPECT_THAT(secrets(), ElementsAre(R"({"amy":"a"})"));
        service.prompts = StandInSecretService::Prompts::accept;
        EXPECT_TRUE(credentials->save());
        ASSERT_TRUE(comesTrue([this] { return credentials->stored(); }));
        EXPECT_THAT(secrets(), ElementsAre(R"({"amy":"a","bob":"b"})"));
    }

    // Nor does the end of the program wait for it.
    service.answers = false;
    load(standIn, {1min, 1min});
    EXPECT_FALSE(keychain->finish(50ms));
    timer.start();
    credentials.reset();
    keychain.reset();
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(KeyringTest, AServiceThatIsNotThereOrGoesAndComesBackIsOnlyUnavailable) {
    loadAndWait("orvendel.test.nobody");
    EXPECT_EQ(credentials->storage(), Storage::unavailable);
    credentials->set("amy", "a");
    EXPECT_TRUE(credentials->save());
    ASSERT_TRUE(comesTrue([this] { return !credentials->stored(); }));

    std::optional<StandInSecretService> service;
    service.emplace(QString::fromStdString(standIn));
    loadAndWait(standIn);
    EXPECT_EQ(credentials->storage(), Storage::known);
    service.reset();
    credentials->set("amy", "a");
    EXPECT_TRUE(credentials->save());
    ASSERT_TRUE(comesTrue([this] { return !credentials->stored(); }));
    EXPECT_EQ(credentials->accounts(), (Accounts{{"amy", "a"}}));
    service.emplace(QString::fromStdString(standIn));
    EXPECT_TRUE(credentials->save());
    ASSERT_TRUE(comesTrue([this] { return credentials->stored(); }));
    EXPECT_EQ(service->items.size(), 1U);
    EXPECT_THAT(printed, IsEmpty());
}

// Last: nobody can open the keyring of this desktop again.
TEST_F(KeyringTest, ALockedRealKeyringReadsAsEmptyAndIsNeverOverwritten) {
    loadAndWait();
    credentials->set("amy", "a");
    save();
    const QString collection =
        searched(accountAttribute).section(QLatin1Char('\''), 1, 1).section(QLatin1Char('/'), 0, 5);
    busctl({secretsPath, QStringLiteral("--method"), QStringLiteral("org.freedesktop.Secret.Service.Lock"),
            QStringLiteral("['%1']").arg(collection)});
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
