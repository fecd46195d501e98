#include "StandInSecretService.h"

#include <QtCore/QTimer>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>

namespace {

// The service's way of handing a secret over (the Secret Service API, "Secret").
struct Secret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};
using Secrets = QMap<QDBusObjectPath, Secret>;
using Texts = QMap<QString, QString>;

[[maybe_unused]] QDBusArgument& operator<<(QDBusArgument& out, const Secret& secret) {
    out.beginStructure();
    out << secret.session << secret.parameters << secret.value << secret.contentType;
    out.endStructure();
    return out;
}
[[maybe_unused]] const QDBusArgument& operator>>(const QDBusArgument& in, Secret& secret) {
    in.beginStructure();
    in >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    in.endStructure();
    return in;
}

}  // namespace

Q_DECLARE_METATYPE(Secret)
Q_DECLARE_METATYPE(Secrets)

namespace vantor {

namespace {

const QString root = QStringLiteral("/org/freedesktop/secrets");
const QString collection = root + QStringLiteral("/collection/one");
const QString session = root + QStringLiteral("/session/1");
const QString unlockPrompt = root + QStringLiteral("/prompt/unlock");
const QString none = QStringLiteral("/");
const QString interfaceStem = QStringLiteral("org.freedesktop.Secret.");

QList<QDBusObjectPath> paths(const QStringList& texts) {
    QList<QDBusObjectPath> found;
    for (const QString& text : texts) found.append(QDBusObjectPath(text));
    return found;
}

}  // namespace

StandInSecretService::StandInSecretService(const QString& busName)
    : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, busName)), busName_(busName) {
    qRegisterMetaType<Secret>();
    qDBusRegisterMetaType<Secret>();
    qDBusRegisterMetaType<Secrets>();
    qDBusRegisterMetaType<Texts>();
    bus_.registerVirtualObject(root, this, QDBusConnection::SubPath);
    bus_.registerService(busName);
}

StandInSecretService::~StandInSecretService() {
    bus_.unregisterObject(root);
    bus_.unregisterService(busName_);
    QDBusConnection::disconnectFromBus(busName_);
}

bool StandInSecretService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.type() != QDBusMessage::MethodCallMessage) return false;
    calls.append(message.member());
    if (answers) connection.send(answerTo(message));
    return true;
}

QVariantMap StandInSecretService::propertiesOf(const QString& path, const QString& interface) const {
    if (interface == interfaceStem + QStringLiteral("Service"))
        return {{QStringLiteral("Collections"), QVariant::fromValue(paths({collection}))}};
    if (interface == interfaceStem + QStringLiteral("Collection"))
        return {{QStringLiteral("Locked"), isLocked}, {QStringLiteral("Label"), QStringLiteral("One")}};
    if (interface == interfaceStem + QStringLiteral("Item") && items.contains(path))
        return {{QStringLiteral("Locked"), isLocked},
                {QStringLiteral("Label"), label},
                {QStringLiteral("Attributes"), QVariant::fromValue(attributes)}};
    return {};
}

QDBusMessage StandInSecretService::answerTo(const QDBusMessage& message) {
    const QString member = message.member();
    const QVariantList given = message.arguments();
    const auto reply = [&](const QVariantList& values) { return message.createReply(values); };
    const auto path = [](const QString& text) { return QVariant::fromValue(QDBusObjectPath(text)); };
    const auto list = [](const QStringList& texts) { return QVariant::fromValue(paths(texts)); };
    const auto secretOf = [&](const QString& item) {
        return Secret{QDBusObjectPath(session), {}, items[item], QStringLiteral("text/plain")};
    };
    QStringList known;
    for (const auto& [item, secret] : items) known.append(item);

    if (member == QLatin1String("GetAll")) return reply({propertiesOf(message.path(), given.value(0).toString())});
    if (member == QLatin1String("OpenSession")) {
        if (given.value(0).toString() != QLatin1String("plain"))
            return message.createErrorReply(QDBusError::NotSupported, QStringLiteral("plain only"));
        return reply({QVariant::fromValue(QDBusVariant(QString())), path(session)});
    }
    if (member == QLatin1String("ReadAlias")) return reply({path(collection)});
    if (member == QLatin1String("SearchItems"))
        return isLocked ? reply({list({}), list(known)}) : reply({list(known), list({})});
    if (member == QLatin1String("Unlock"))
        return isLocked ? reply({list({}), path(unlockPrompt)}) : reply({list({collection}), path(none)});
    if (member == QLatin1String("GetSecrets")) {
        Secrets secrets;
        if (!isLocked)
            for (const QString& item : known) secrets.insert(QDBusObjectPath(item), secretOf(item));
        return reply({QVariant::fromValue(secrets)});
    }
    if (member == QLatin1String("Prompt")) {
        ++prompted;
        if (prompts == Prompts::accept || prompts == Prompts::dismiss)
            QTimer::singleShot(0, this, [this] { finishPrompt(unlockPrompt); });
        return reply({});
    }
    if (member == QLatin1String("Dismiss")) {
        if (prompts == Prompts::ignore) QTimer::singleShot(0, this, [this] { finishPrompt(unlockPrompt); });
        return reply({});
    }
    if (member == QLatin1String("Delete")) {
        items.erase(message.path());
        return reply({path(none)});
    }
    if (member == QLatin1String("CreateItem")) {
        const QString item = collection + QStringLiteral("/%1").arg(++nextItem_);
        const auto properties = qdbus_cast<QVariantMap>(given.value(0));
        attributes = qdbus_cast<Texts>(properties.value(interfaceStem + QStringLiteral("Item.Attributes")));
        label = properties.value(interfaceStem + QStringLiteral("Item.Label")).toString();
        items[item] = qdbus_cast<Secret>(given.value(1)).value;
        return reply({path(item), path(none)});
    }
    return reply({});
}

void StandInSecretService::finishPrompt(const QString& path) {
    const bool accepted = prompts == Prompts::accept;
    if (accepted) isLocked = false;
    auto completed =
        QDBusMessage::createSignal(path, interfaceStem + QStringLiteral("Prompt"), QStringLiteral("Completed"));
    completed << !accepted
              << QVariant::fromValue(
                     QDBusVariant(QVariant::fromValue(paths(accepted ? QStringList{collection} : QStringList{}))));
    bus_.send(completed);
}

}  // namespace vantor
