// The logins in a real keyring, and in a stand-in service that locks, asks, and does not answer. Runs in
// demo/private_desktop.sh, whose bus and keyring are ours.

#include <gmock/gmock.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusVirtualObject>
#include <QtWidgets/QApplication>
#include <map>
#include <vector>

#include "ComesTrue.h"
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

// The service's way of handing a secret over (the Secret Service API, "Secret").
struct BusSecret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};
using BusSecrets = QMap<QDBusObjectPath, BusSecret>;

QDBusArgument& operator<<(QDBusArgument& out, const BusSecret& secret) {
    out.beginStructure();
    out << secret.session << secret.parameters << secret.value << secret.contentType;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, BusSecret& secret) {
    in.beginStructure();
    in >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    in.endStructure();
    return in;
}

// On a bus name of its own: one collection that a test locks, with a prompt that it accepts, refuses or leaves
// unanswered; and one that takes calls and never answers.
class StandInSecretService final : public QDBusVirtualObject {
public:
    // Ignored, a prompt ends when whoever asked for it gives up; abandoned, never.
    enum class Prompts { accept, dismiss, ignore, abandon };

    explicit StandInSecretService(const QString& busName)
        : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, busName)), busName_(busName) {
        qDBusRegisterMetaType<BusSecret>();
        qDBusRegisterMetaType<BusSecrets>();
        qDBusRegisterMetaType<QMap<QString, QString>>();
        bus_.registerVirtualObject(root_, this, QDBusConnection::SubPath);
        enter();
    }
    ~StandInSecretService() override {
        leave();
        bus_.unregisterObject(root_);
        QDBusConnection::disconnectFromBus(busName_);
    }
    void enter() { bus_.registerService(busName_); }
    void leave() { bus_.unregisterService(busName_); }

    bool isLocked = false;
    bool answers = true;
    Prompts prompts = Prompts::accept;
    int prompted = 0;
    QStringList calls;  // members, in order
    QString label;      // of the last item that was made

    void arrange(const QByteArray& secret) { items_ = {{itemPath(0), secret}}; }
    [[nodiscard]] std::vector<std::string> secrets() const {
        std::vector<std::string> found;
        for (const auto& [path, secret] : items_) found.push_back(secret.toStdString());
        return found;
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.type() != QDBusMessage::MethodCallMessage) return false;
        calls.append(message.member());
        const bool encrypted =
            message.member() == QLatin1String("OpenSession") && message.arguments().value(0) != QStringLiteral("plain");
        if (answers)
            connection.send(encrypted ? message.createErrorReply(QDBusError::NotSupported, QStringLiteral("plain only"))
                                      : message.createReply(answerTo(message)));
        return true;
    }

private:
    [[nodiscard]] QString itemPath(int number) const { return collection_ + QStringLiteral("/%1").arg(number); }
    template <typename... Texts>
    static QVariant paths(const Texts&... texts) {
        return QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(texts)...});
    }
    static QVariant path(const QString& text) { return QVariant::fromValue(QDBusObjectPath(text)); }

    // Everything that an interface of these objects has; who asks takes what he knows.
    [[nodiscard]] QVariantMap properties() const {
        return {{QStringLiteral("Collections"), paths(collection_)},
                {QStringLiteral("Locked"), isLocked},
                {QStringLiteral("Label"), QString()},
                {QStringLiteral("Attributes"), QVariant::fromValue(QMap<QString, QString>())}};
    }
    [[nodiscard]] QVariantList answerTo(const QDBusMessage& message) {
        const QString member = message.member();
        const QVariantList given = message.arguments();
        const QString none = QStringLiteral("/");
        if (member == QLatin1String("GetAll")) return {properties()};
        if (member == QLatin1String("OpenSession"))
            return {QVariant::fromValue(QDBusVariant(QString())), path(session_)};
        if (member == QLatin1String("ReadAlias")) return {path(collection_)};
        if (member == QLatin1String("SearchItems")) {
            QList<QDBusObjectPath> known;
            for (const auto& [item, secret] : items_) known.append(QDBusObjectPath(item));
            const auto all = QVariant::fromValue(known);
            return isLocked ? QVariantList{paths(), all} : QVariantList{all, paths()};
        }
        if (member == QLatin1String("Unlock"))
            return isLocked ? QVariantList{paths(), path(prompt_)} : QVariantList{paths(collection_), path(none)};
        if (member == QLatin1String("GetSecrets")) {
            BusSecrets secrets;
            for (const auto& [item, secret] : items_)
                if (!isLocked)
                    secrets[QDBusObjectPath(item)] = {
                        QDBusObjectPath(session_), {}, secret, QStringLiteral("text/plain")};
            return {QVariant::fromValue(secrets)};
        }
        if (member == QLatin1String("Prompt")) {
            ++prompted;
            if (prompts == Prompts::accept || prompts == Prompts::dismiss) finishPrompt();
        }
        if (member == QLatin1String("Dismiss") && prompts == Prompts::ignore) finishPrompt();
        if (member == QLatin1String("Delete")) {
            items_.erase(message.path());
            return {path(none)};
        }
        if (member == QLatin1String("CreateItem")) {
            const auto item = itemPath(++lastItem_);
            label =
                qdbus_cast<QVariantMap>(given[0]).value(QStringLiteral("org.freedesktop.Secret.Item.Label")).toString();
            items_[item] = qdbus_cast<BusSecret>(given[1]).value;
            return {path(item), path(none)};
        }
        return {};
    }
    void finishPrompt() {
        QTimer::singleShot(0, this, [this] {
            const bool accepted = prompts == Prompts::accept;
            if (accepted) isLocked = false;
            auto completed = QDBusMessage::createSignal(prompt_, QStringLiteral("org.freedesktop.Secret.Prompt"),
                                                        QStringLiteral("Completed"));
            completed << !accepted << QVariant::fromValue(QDBusVariant(accepted ? paths(collection_) : paths()));
            bus_.send(completed);
        });
    }

    const QString root_ = QStringLiteral("/org/freedesktop/secrets");
    const QString collection_ = root_ + QStringLiteral("/collection/one");
    const QString session_ = root_ + QStringLiteral("/session/1");
    const QString prompt_ = root_ + QStringLiteral("/prompt/unlock");
    QDBusConnection bus_;
    QString busName_;
    std::map<QString, QByteArray> items_;  // secret by object path
    int lastItem_ = 0;
};

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
