#include "StandInStatusBar.h"

#include <QtCore/QMutex>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtWidgets/QApplication>

namespace vantor {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

const QString introspection = QStringLiteral(
    "<node><interface name=\"org.kde.StatusNotifierWatcher\">"
    "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/>"
    "<property name=\"ProtocolVersion\" type=\"i\" access=\"read\"/>"
    "<property name=\"RegisteredStatusNotifierItems\" type=\"as\" access=\"read\"/>"
    "<method name=\"RegisterStatusNotifierItem\"><arg type=\"s\" direction=\"in\"/></method>"
    "<method name=\"RegisterStatusNotifierHost\"><arg type=\"s\" direction=\"in\"/></method>"
    "<signal name=\"StatusNotifierHostRegistered\"/>"
    "</interface></node>");

QDBusMessage call(const QDBusMessage& message) {
    QDBusPendingCallWatcher pending(QDBusConnection::sessionBus().asyncCall(message));
    while (!pending.isFinished()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return pending.reply();
}

QVariant property(const QString& item, const QString& name) {
    auto message =
        QDBusMessage::createMethodCall(item, QStringLiteral("/StatusNotifierItem"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << itemInterface << name;
    const auto reply = call(message);
    return qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant();
}

QString menuPath(const QString& item) {
    return qvariant_cast<QDBusObjectPath>(property(item, QStringLiteral("Menu"))).path();
}

// Two underscores show as one; any other is the mark of a shortcut and does not show.
std::string shown(QString label) {
    const QChar kept(0x1);
    label.replace(QLatin1String("__"), QString(kept)).remove(QLatin1Char('_')).replace(kept, QLatin1Char('_'));
    return label.toStdString();
}

// (ia{sv}av): an entry, and within it those below.
StatusBarEntry readEntry(const QDBusArgument& argument) {
    StatusBarEntry entry;
    QVariantMap properties;
    argument.beginStructure();
    argument >> entry.id >> properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant below;
        argument >> below;
        entry.entries.push_back(readEntry(qvariant_cast<QDBusArgument>(below.variant())));
    }
    argument.endArray();
    argument.endStructure();
    const bool separator = properties.value(QStringLiteral("type")) == QLatin1String("separator");
    entry.label = separator ? "-" : shown(properties.value(QStringLiteral("label")).toString());
    entry.enabled = properties.value(QStringLiteral("enabled"), true).toBool();
    return entry;
}

}  // namespace

class StandInStatusBar::Watcher final : public QDBusVirtualObject {
public:
    void enter() {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_);
        bus.registerVirtualObject(watcherPath, this);
        bus.registerService(watcherName);
    }
    void leave() {
        {
            auto bus = QDBusConnection(connectionName_);
            bus.unregisterService(watcherName);
            bus.unregisterObject(watcherPath);
        }
        QDBusConnection::disconnectFromBus(connectionName_);
    }
    [[nodiscard]] QStringList items() const {
        const QMutexLocker lock(&mutex_);
        return items_;
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QString member = message.member();
        if (member == QLatin1String("RegisterStatusNotifierItem")) {
            const QMutexLocker lock(&mutex_);
            const QString given = message.arguments().value(0).toString();
            items_.append(given.startsWith(QLatin1Char('/')) ? message.service() : given);
        } else if (member == QLatin1String("Introspect")) {
            return connection.send(message.createReply(introspection));
        } else if (member == QLatin1String("Get")) {
            const bool flag = message.arguments().value(1) == QLatin1String("IsStatusNotifierHostRegistered");
            return connection.send(
                message.createReply(QVariant::fromValue(QDBusVariant(flag ? QVariant(true) : QVariant(0)))));
        } else if (member == QLatin1String("GetAll")) {
            return connection.send(
                message.createReply(QVariantMap{{QStringLiteral("IsStatusNotifierHostRegistered"), true}}));
        }
        return connection.send(message.createReply());
    }

private:
    const QString connectionName_ = QStringLiteral("stand-in status bar");
    mutable QMutex mutex_;
    QStringList items_;
};

StandInStatusBar::StandInStatusBar(Start when) {
    if (when == Start::now) start();
}

StandInStatusBar::~StandInStatusBar() { stop(); }

void StandInStatusBar::start() {
    thread_ = std::make_unique<QThread>();
    watcher_ = std::make_unique<Watcher>();
    watcher_->moveToThread(thread_.get());
    thread_->start();
    QMetaObject::invokeMethod(watcher_.get(), [this] { watcher_->enter(); }, Qt::BlockingQueuedConnection);
}

void StandInStatusBar::stop() {
    if (!watcher_) return;
    QMetaObject::invokeMethod(watcher_.get(), [this] { watcher_->leave(); }, Qt::BlockingQueuedConnection);
    thread_->quit();
    thread_->wait();
    watcher_.reset();
}

void StandInStatusBar::restart() {
    stop();
    start();
}

QStringList StandInStatusBar::items() const { return watcher_ ? watcher_->items() : QStringList(); }

std::optional<std::vector<StatusBarEntry>> StandInStatusBar::menuOf(const QString& item) const {
    const QString path = menuPath(item);
    if (!path.startsWith(QLatin1Char('/'))) return std::nullopt;
    auto opening = QDBusMessage::createMethodCall(item, path, menuInterface, QStringLiteral("AboutToShow"));
    opening << 0;
    (void)call(opening);
    auto message = QDBusMessage::createMethodCall(item, path, menuInterface, QStringLiteral("GetLayout"));
    message << 0 << -1 << QStringList();
    const auto reply = call(message);
    if (reply.type() != QDBusMessage::ReplyMessage) return std::nullopt;
    return readEntry(qvariant_cast<QDBusArgument>(reply.arguments().value(1))).entries;
}

void StandInStatusBar::click(const QString& item, int id) const {
    auto message = QDBusMessage::createMethodCall(item, menuPath(item), menuInterface, QStringLiteral("Event"));
    message << id << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(QVariant(QString()))) << 0U;
    (void)call(message);
}

}  // namespace vantor
