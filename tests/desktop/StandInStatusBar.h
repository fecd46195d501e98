#pragma once
// A desktop's status bar on the session bus (org.kde.StatusNotifierWatcher): takes items in, reads an item's menu
// (com.canonical.dbusmenu) and clicks its entries. The watcher answers on a thread of its own, as another process
// would; everything else is the main thread's.

#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <QtWidgets/QApplication>
#include <optional>
#include <string>
#include <vector>

namespace vantor {

struct StatusBarEntry {
    int id = 0;
    std::string label;  // without the mark of a shortcut; "-" for a separator
    bool enabled = true;
    std::vector<StatusBarEntry> entries{};
};

class StandInStatusBar {
public:
    StandInStatusBar() {
        watcher_.moveToThread(&thread_);
        thread_.start();
    }
    ~StandInStatusBar() {
        leave();
        thread_.quit();
        thread_.wait();
    }
    StandInStatusBar(const StandInStatusBar&) = delete;
    StandInStatusBar& operator=(const StandInStatusBar&) = delete;

    void enter() {
        QMetaObject::invokeMethod(&watcher_, [this] { watcher_.enter(); }, Qt::BlockingQueuedConnection);
    }
    // As a desktop that crashes does.
    void leave() {
        QMetaObject::invokeMethod(&watcher_, [this] { watcher_.leave(); }, Qt::BlockingQueuedConnection);
    }
    // Nothing while no item with a menu has registered. Turns the event loop: the item may be this process's own.
    [[nodiscard]] std::optional<std::vector<StatusBarEntry>> menu() const {
        const QString path = menuPath();
        if (!path.startsWith(QLatin1Char('/'))) return std::nullopt;
        (void)call(path, menuInterface(), QStringLiteral("AboutToShow"), {0});
        const auto reply = call(path, menuInterface(), QStringLiteral("GetLayout"), {0, -1, QStringList()});
        if (reply.type() != QDBusMessage::ReplyMessage) return std::nullopt;
        return readEntry(qvariant_cast<QDBusArgument>(reply.arguments().value(1))).entries;
    }
    void click(int id) const {
        (void)call(menuPath(), menuInterface(), QStringLiteral("Event"),
                   {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QVariant(QString()))), 0U});
    }

private:
    class Watcher final : public QDBusVirtualObject {
    public:
        void enter() {
            auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_);
            bus.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), this);
            bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        }
        void leave() {
            QDBusConnection::disconnectFromBus(connectionName_);
            const QMutexLocker lock(&mutex_);
            items_.clear();
        }
        // The bus names of the items that have registered, in order.
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
            }
            // The toolkit asks for the property only where it is told that there is one.
            if (member == QLatin1String("Introspect"))
                return connection.send(message.createReply(QStringLiteral(
                    "<node><interface name=\"org.kde.StatusNotifierWatcher\"><method "
                    "name=\"RegisterStatusNotifierItem\">"
                    "<arg type=\"s\" direction=\"in\"/></method><property name=\"IsStatusNotifierHostRegistered\" "
                    "type=\"b\" access=\"read\"/></interface></node>")));
            if (member == QLatin1String("Get"))  // IsStatusNotifierHostRegistered
                return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
            return connection.send(message.createReply());
        }

    private:
        const QString connectionName_ = QStringLiteral("stand-in status bar");
        mutable QMutex mutex_;
        QStringList items_;
    };

    static QString menuInterface() { return QStringLiteral("com.canonical.dbusmenu"); }
    // To the item that came last.
    [[nodiscard]] QDBusMessage call(const QString& path, const QString& interface, const QString& member,
                                    const QVariantList& arguments) const {
        const auto items = watcher_.items();
        if (items.isEmpty()) return {};
        auto message = QDBusMessage::createMethodCall(items.constLast(), path, interface, member);
        message.setArguments(arguments);
        QDBusPendingCallWatcher pending(QDBusConnection::sessionBus().asyncCall(message));
        while (!pending.isFinished()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return pending.reply();
    }
    [[nodiscard]] QString menuPath() const {
        const auto reply =
            call(QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.freedesktop.DBus.Properties"),
                 QStringLiteral("Get"), {QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Menu")});
        return qvariant_cast<QDBusObjectPath>(qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant()).path();
    }
    // Two underscores show as one; any other is the mark of a shortcut and does not show.
    static std::string shown(QString label) {
        const QChar kept(0x1);
        label.replace(QLatin1String("__"), QString(kept)).remove(QLatin1Char('_')).replace(kept, QLatin1Char('_'));
        return label.toStdString();
    }
    // (ia{sv}av): an entry, and within it those below.
    static StatusBarEntry readEntry(const QDBusArgument& argument) {
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

    QThread thread_;
    Watcher watcher_;
};

}  // namespace vantor
