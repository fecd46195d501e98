#include "platform/linux/services/PortalShortcuts.h"

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtGui/QGuiApplication>
#include <utility>

namespace {

// a(sa{sv})
struct Offered {
    QString id;
    QVariantMap options;
};
using AllOffered = QList<Offered>;

[[maybe_unused]] QDBusArgument& operator<<(QDBusArgument& out, const Offered& offered) {
    out.beginStructure();
    out << offered.id << offered.options;
    out.endStructure();
    return out;
}
[[maybe_unused]] const QDBusArgument& operator>>(const QDBusArgument& in, Offered& offered) {
    in.beginStructure();
    in >> offered.id >> offered.options;
    in.endStructure();
    return in;
}

}  // namespace

Q_DECLARE_METATYPE(Offered)
Q_DECLARE_METATYPE(AllOffered)

namespace vantor {
namespace {

constexpr int patience = 2000;  // milliseconds

QString place() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
QString shortcutsInterface() { return QStringLiteral("org.freedesktop.portal.GlobalShortcuts"); }

// The portal knows a connection by its first call: what names Vantor has to be that, so it is no connection that the
// toolkit uses for other portals.
QString nameOfConnection(const void* owner) {
    return QStringLiteral("vantor-shortcuts-%1").arg(reinterpret_cast<quintptr>(owner));
}

}  // namespace

QString PortalShortcuts::portalName() { return QStringLiteral("org.freedesktop.portal.Desktop"); }

PortalShortcuts::PortalShortcuts(std::vector<DesktopShortcut> shortcuts,
                                 std::function<void(const std::string& id)> activated, QString portal)
    : shortcuts_(std::move(shortcuts)),
      activated_(std::move(activated)),
      portal_(std::move(portal)),
      connectionName_(nameOfConnection(this)),
      bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_)) {
    if (!bus_.isConnected()) return;
    qDBusRegisterMetaType<Offered>();
    qDBusRegisterMetaType<AllOffered>();
    auto registration = callOf(QStringLiteral("org.freedesktop.host.portal.Registry"), QStringLiteral("Register"));
    registration << QGuiApplication::desktopFileName() << QVariantMap();
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(registration, patience), this);
    // Older portals have no registry and go by the desktop's own knowledge of the program.
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        createSession();
    });
}

PortalShortcuts::~PortalShortcuts() { QDBusConnection::disconnectFromBus(connectionName_); }

QDBusMessage PortalShortcuts::callOf(const QString& interface, const QString& member) const {
    return QDBusMessage::createMethodCall(portal_, place(), interface, member);
}

QVariantMap PortalShortcuts::expecting(const QString& token, const char* slot) {
    QString sender = bus_.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    if (slot)
        bus_.connect(portal_, place() + QStringLiteral("/request/") + sender + QLatin1Char('/') + token,
                     QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this, slot);
    return {{QStringLiteral("handle_token"), token}};
}

void PortalShortcuts::createSession() {
    QVariantMap options = expecting(QStringLiteral("vantor_session"), SLOT(takeSession(uint, QVariantMap)));
    options.insert(QStringLiteral("session_handle_token"), QStringLiteral("vantor"));
    auto call = callOf(shortcutsInterface(), QStringLiteral("CreateSession"));
    call << options;
    bus_.asyncCall(call, patience);
}

void PortalShortcuts::takeSession(uint response, const QVariantMap& results) {
    if (response != 0 || !session_.isEmpty()) return;
    session_ = results.value(QStringLiteral("session_handle")).toString();
    bus_.connect(portal_, place(), shortcutsInterface(), QStringLiteral("Activated"), this,
                 SLOT(handleActivation(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    AllOffered all;
    for (const DesktopShortcut& each : shortcuts_) {
        QVariantMap options{{QStringLiteral("description"), QString::fromStdString(each.description)}};
        if (!each.trigger.empty())
            options.insert(QStringLiteral("preferred_trigger"), QString::fromStdString(each.trigger));
        all.append({QString::fromStdString(each.id), options});
    }
    auto call = callOf(shortcutsInterface(), QStringLiteral("BindShortcuts"));
    call << QVariant::fromValue(QDBusObjectPath(session_)) << QVariant::fromValue(all) << QString()
         << expecting(QStringLiteral("vantor_bind"), nullptr);
    bus_.asyncCall(call);
}

void PortalShortcuts::handleActivation(const QDBusObjectPath& session, const QString& id, qulonglong,
                                       const QVariantMap&) {
    if (session.path() == session_) activated_(id.toStdString());
}

bool hasShortcutPortal(const QString& portal) {
    auto question = QDBusMessage::createMethodCall(portal, place(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                                   QStringLiteral("Get"));
    question << shortcutsInterface() << QStringLiteral("version");
    return QDBusConnection::sessionBus().call(question, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

}  // namespace vantor
