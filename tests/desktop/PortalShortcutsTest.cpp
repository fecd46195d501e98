// The desktop's own shortcuts, against a stand-in portal on the real session bus.

#include <gmock/gmock.h>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVirtualObject>
#include <QtGui/QGuiApplication>

#include "ComesTrue.h"
#include "platform/linux/services/PortalShortcuts.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString sessionPath = portalPath + QStringLiteral("/session/1_2/vantor");
const QString shortcutsName = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

// Answers as the portals' documentation says; what it was asked for is written down.
class StandInPortal final : public QDBusVirtualObject {
public:
    explicit StandInPortal(const QString& name)
        : name_(name), bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)) {
        bus_.registerVirtualObject(portalPath, this, QDBusConnection::SubPath);
        bus_.registerService(name);
    }
    ~StandInPortal() override { QDBusConnection::disconnectFromBus(name_); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        const QString member = message.member();
        asked << member;
        if (member == QLatin1String("Register")) {
            asked << message.arguments().at(0).toString();
            return bus_.send(message.createReply());
        }
        const bool creates = member == QLatin1String("CreateSession");
        if (!creates && member != QLatin1String("BindShortcuts")) return false;
        const auto options = qdbus_cast<QVariantMap>(message.arguments().at(creates ? 0 : 3));
        QString sender = message.service().mid(1);
        const QString request = portalPath + QStringLiteral("/request/") + sender.replace(u'.', u'_') + u'/' +
                                options.value(QStringLiteral("handle_token")).toString();
        bus_.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        if (!creates) note(message.arguments().at(1).value<QDBusArgument>());
        auto response = QDBusMessage::createSignal(request, QStringLiteral("org.freedesktop.portal.Request"),
                                                   QStringLiteral("Response"));
        response << refusal << QVariantMap{{QStringLiteral("session_handle"), sessionPath}};
        return bus_.send(response);
    }
    void activate(const QString& session, const QString& id) {
        auto signal = QDBusMessage::createSignal(portalPath, shortcutsName, QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong{1} << QVariantMap();
        bus_.send(signal);
    }

    QStringList asked;
    uint refusal = 0;

private:
    void note(const QDBusArgument& shortcuts) {
        shortcuts.beginArray();
        while (!shortcuts.atEnd()) {
            QString id;
            QVariantMap options;
            shortcuts.beginStructure();
            shortcuts >> id >> options;
            shortcuts.endStructure();
            asked << id + u' ' + options.value(QStringLiteral("preferred_trigger"), QStringLiteral("-")).toString();
        }
        shortcuts.endArray();
    }

    QString name_;
    QDBusConnection bus_;
};

class PortalShortcutsTest : public testing::Test {
protected:
    const QString name = QStringLiteral("orvendel.test.portal");
    const std::vector<DesktopShortcut> shortcuts{{"toggle", "Open", "CTRL+t"}, {"paste", "Type", ""}};
    std::vector<std::string> activated;
    const std::function<void(const std::string&)> tell = [this](const std::string& id) { activated.push_back(id); };
};

TEST_F(PortalShortcutsTest, NamesVantorBindsOnceAndTellsWhatIsActivatedInItsOwnSession) {
    QGuiApplication::setDesktopFileName(QStringLiteral("example.vantor.Test"));
    StandInPortal portal(name);
    PortalShortcuts bound(shortcuts, tell, name);
    ASSERT_TRUE(comesTrue([&] { return portal.asked.contains(QStringLiteral("paste -")); }));
    EXPECT_EQ(portal.asked.join(u' '), QStringLiteral("Register example.vantor.Test CreateSession BindShortcuts "
                                                      "toggle CTRL+t paste -"));
    portal.activate(QStringLiteral("/another"), QStringLiteral("toggle"));
    portal.activate(sessionPath, QStringLiteral("paste"));
    ASSERT_TRUE(comesTrue([&] { return !activated.empty(); }));
    EXPECT_THAT(activated, ElementsAre("paste"));
}

TEST_F(PortalShortcutsTest, IsSilentWhereThePlayerRefusesOrThereIsNoPortal) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(hasShortcutPortal(name));
    {
        PortalShortcuts nobody(shortcuts, tell, name);
    }
    StandInPortal portal(name);
    portal.refusal = 1;
    PortalShortcuts refused(shortcuts, tell, name);
    ASSERT_TRUE(comesTrue([&] { return portal.asked.contains(QStringLiteral("CreateSession")); }));
    portal.activate(sessionPath, QStringLiteral("toggle"));
    PortalShortcuts next(shortcuts, tell, name);
    portal.refusal = 0;
    ASSERT_TRUE(comesTrue([&] { return portal.asked.contains(QStringLiteral("BindShortcuts")); }));
    EXPECT_THAT(activated, ElementsAre());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace vantor
