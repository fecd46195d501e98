// The wish for reduced motion, asked of a settings portal on the session bus. Runs in demo/private_desktop.sh.

#include "platform/linux/services/ReducedMotion.h"

#include <gmock/gmock.h>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>

#include "ComesTrue.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");

// Stands on a connection of its own, so that every call goes over the bus.
class StandInPortal final : public QDBusVirtualObject {
public:
    StandInPortal() : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"))) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(portalName)) << "another portal is on this bus";
    }
    ~StandInPortal() override {
        bus_.unregisterService(portalName);
        bus_.unregisterObject(portalPath);
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QString setting =
            message.arguments().value(0).toString() + QLatin1Char(' ') + message.arguments().value(1).toString();
        asked.append(setting);
        // Its interface says one variant, and every portal wraps the value twice.
        const auto wrapped = QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(settings[setting]))));
        return connection.send(settings[setting].isValid()
                                   ? message.createReply(wrapped)
                                   : message.createErrorReply(portalInterface + QStringLiteral(".NotFound"), {}));
    }

    QVariantMap settings;
    QStringList asked;

private:
    QDBusConnection bus_;
};

TEST(ReducedMotionTest, IsWhatTheFirstKnownSettingOfTheDesktopsSays) {
    const QString gnome = QStringLiteral("org.gnome.desktop.interface enable-animations");
    const QString kde = QStringLiteral("org.kde.kdeglobals.KDE AnimationDurationFactor");
    const struct {
        QVariant animations;
        QVariant factor;
        std::vector<bool> answers;
    } rows[] = {
        {false, {}, {true}},
        {true, QStringLiteral("0"), {false}},
        {{}, QStringLiteral("0"), {true}},
        {{}, QStringLiteral("0.5"), {false}},
        {QStringLiteral("of another type"), QStringLiteral("0"), {true}},
        {{}, {}, {}},
    };
    StandInPortal portal;
    for (const auto& row : rows) {
        portal.settings = {{gnome, row.animations}, {kde, row.factor}};
        portal.asked.clear();
        std::vector<bool> answers;
        askReducedMotion([&answers](bool reduced) { answers.push_back(reduced); });
        EXPECT_THAT(answers, ElementsAre()) << "it does not wait for the bus";
        const bool first = row.animations.typeId() == QMetaType::Bool;
        const QStringList questions = first ? QStringList{gnome} : QStringList{gnome, kde};
        EXPECT_TRUE(comesTrue([&] { return portal.asked.size() >= questions.size(); }));
        // Replies come in order: when this one is there, the last answer is too.
        const QDBusPendingCallWatcher last(QDBusConnection::sessionBus().asyncCall(
            QDBusMessage::createMethodCall(portalName, portalPath, portalInterface, QStringLiteral("Last"))));
        EXPECT_TRUE(comesTrue([&] { return last.isFinished(); }));
        QApplication::processEvents();
        portal.asked.removeLast();
        EXPECT_EQ(portal.asked, questions);
        EXPECT_EQ(answers, row.answers);
    }
}

}  // namespace
}  // namespace vantor
