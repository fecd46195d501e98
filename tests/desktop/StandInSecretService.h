#pragma once
// A Secret Service for the tests, on a bus name of its own: one collection that a test locks, with a prompt that it
// accepts, refuses or leaves unanswered; and one that takes calls and never answers. Main thread.

#include <QtCore/QTimer>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusVirtualObject>
#include <map>
#include <vector>

namespace vantor {

// The service's way of handing a secret over (the Secret Service API, "Secret").
struct BusSecret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};
using BusSecrets = QMap<QDBusObjectPath, BusSecret>;

inline QDBusArgument& operator<<(QDBusArgument& out, const BusSecret& secret) {
    out.beginStructure();
    out << secret.session << secret.parameters << secret.value << secret.contentType;
    out.endStructure();
    return out;
}
inline const QDBusArgument& operator>>(const QDBusArgument& in, BusSecret& secret) {
    in.beginStructure();
    in >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    in.endStructure();
    return in;
}

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

}  // namespace vantor
