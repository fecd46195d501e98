// The status item as a desktop has it: on the bus, its entries read and clicked there. Runs in demo/private_desktop.sh.

#include "platform/linux/services/TrayStatusItem.h"

#include <gmock/gmock.h>

#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "ComesTrue.h"

namespace vantor {
namespace {

using testing::ElementsAre;

struct Entry {
    int id = 0;
    // Without the mark of a shortcut, "-" for a separator, in brackets below another, and with a word if disabled.
    std::string text;
};
using Entries = std::vector<Entry>;

// A desktop's status bar on the session bus (org.kde.StatusNotifierWatcher): takes items in, reads an item's menu
// (com.canonical.dbusmenu) and clicks its entries. The watcher answers on a thread of its own, as another process
// would; everything else is the main thread's.
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
    [[nodiscard]] Entries menu() const {
        const QString path = menuPath();
        if (!path.startsWith(QLatin1Char('/'))) return {};
        (void)call(path, menuInterface(), QStringLiteral("AboutToShow"), {0});
        const auto reply = call(path, menuInterface(), QStringLiteral("GetLayout"), {0, -1, QStringList()});
        Entries entries;
        if (reply.type() == QDBusMessage::ReplyMessage) {
            readEntry(qvariant_cast<QDBusArgument>(reply.arguments().value(1)), 0, entries);
            entries.erase(entries.begin());  // the menu itself
        }
        return entries;
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
    static void readEntry(const QDBusArgument& argument, int depth, Entries& entries) {
        int id = 0;
        QVariantMap properties;
        argument.beginStructure();
        argument >> id >> properties;
        const bool separator = properties.value(QStringLiteral("type")) == QLatin1String("separator");
        const auto text = separator ? "-" : shown(properties.value(QStringLiteral("label")).toString());
        const auto named = properties.value(QStringLiteral("enabled"), true).toBool() ? text : text + " (disabled)";
        entries.push_back({id, depth > 1 ? "[" + named + "]" : named});
        argument.beginArray();
        while (!argument.atEnd()) {
            QDBusVariant below;
            argument >> below;
            readEntry(qvariant_cast<QDBusArgument>(below.variant()), depth + 1, entries);
        }
        argument.endArray();
        argument.endStructure();
    }

    QThread thread_;
    Watcher watcher_;
};

class TrayStatusItemTest : public testing::Test {
protected:
    // Whether the menu's entries become these.
    [[nodiscard]] bool shows(const std::vector<std::string>& expected) {
        const auto same = [](const Entry& entry, const std::string& text) { return entry.text == text; };
        return comesTrue([&] {
            const auto menu = bar.menu();
            return std::equal(menu.begin(), menu.end(), expected.begin(), expected.end(), same);
        });
    }
    void click(const Entry& entry) {
        const auto before = done.size();
        bar.click(entry.id);
        EXPECT_TRUE(comesTrue([&] { return done.size() > before; })) << entry.text;
    }
    MenuEntry entry(const std::string& title) {
        return MenuEntry{.title = title, .action = [this, title] { done.push_back(title); }, .submenu = {}};
    }

    StandInStatusBar bar;
    std::vector<std::string> done;
};

// One test: the toolkit asks for a status bar once in a process's life.
TEST_F(TrayStatusItemTest, IsFoundByADesktopThatComesLateAndReadAndClickedThere) {
    auto item = std::make_unique<TrayStatusItem>([] { return false; });
    auto accounts = MenuEntry{.title = "Fill credentials", .action = {}, .submenu = {}};
    accounts.submenu = {entry("R&D_x"), MenuEntry{.title = "No accounts", .action = {}, .submenu = {}}};
    const MenuEntry line{.kind = MenuEntry::Kind::separator, .title = {}, .action = {}, .submenu = {}};
    item->setMenu("Vantor", {entry("Allow on application"), accounts, line, entry("Quit")});
    item->setEntry(0, "Disable on Fish & Chips_2 & more__", true);
    EXPECT_FALSE(item->available());

    bar.enter();
    ASSERT_TRUE(shows({"Disable on Fish & Chips_2 & more__", "Fill credentials", "[R&D_x]", "[No accounts (disabled)]",
                       "-", "Quit"}));
    EXPECT_TRUE(item->available());
    const auto entries = bar.menu();
    for (const std::size_t each : {0U, 2U, 5U}) click(entries[each]);
    EXPECT_THAT(done, ElementsAre("Allow on application", "R&D_x", "Quit"));

    // Later changes reach it, and a desktop that starts anew finds the item again, as it does another item.
    item->setMenu("Vantor", {entry("Another")});
    EXPECT_TRUE(shows({"Another"}));
    item->setEntry(0, "Another", false);
    EXPECT_TRUE(shows({"Another (disabled)"}));
    bar.leave();
    bar.enter();
    EXPECT_TRUE(shows({"Another (disabled)"}));
    item = std::make_unique<TrayStatusItem>([] { return false; });
    item->setMenu("Vantor", {entry("Quit")});
    EXPECT_TRUE(shows({"Quit"}));
}

}  // namespace
}  // namespace vantor
