// The wish for reduced motion, asked of a settings portal on the session bus. Runs in demo/private_desktop.sh.

#include "platform/linux/services/ReducedMotion.h"

#include <gtest/gtest.h>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <vector>

#include "ComesTrue.h"

namespace vantor {
namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");

// Stands on a connection of its own, so that every call goes over the bus.
class StandInPortal final : public QDBusVirtualObject {
public:
    StandInPortal() {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(portalName)) << "another portal is on this bus";
    }
    ~StandInPortal() override { QDBusConnection::disconnectFromBus(bus_.name()); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        asked.append(message.arguments().value(0).toString() + QLatin1Char(' ') +
                     message.arguments().value(1).toString());
        const QVariant setting = settings[asked.constLast()];
        // Its interface says one variant, and every portal wraps the value twice.
        const auto wrapped = QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(setting))));
        return connection.send(setting.isValid()
                                   ? message.createReply(wrapped)
                                   : message.createErrorReply(portalInterface + QStringLiteral(".NotFound"), {}));
    }

    QVariantMap settings;
    QStringList asked;

private:
    QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
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
        EXPECT_TRUE(answers.empty()) << "it does not wait for the bus";
        // Where the first says nothing that is known, the second is asked.
        const bool first = row.animations.typeId() == QMetaType::Bool;
        EXPECT_TRUE(comesTrue([&] { return portal.asked.size() >= (first ? 1 : 2); }));
        // Replies come in order: when this one is there, the last answer is too.
        const QDBusPendingCallWatcher last(QDBusConnection::sessionBus().asyncCall(
            QDBusMessage::createMethodCall(portalName, portalPath, portalInterface, QStringLiteral("Last"))));
        EXPECT_TRUE(comesTrue([&] { return last.isFinished(); }));
        QApplication::processEvents();
        EXPECT_EQ(portal.asked.size(), first ? 2 : 3);
        EXPECT_EQ(answers, row.answers);
    }
}

}  // namespace
}  // namespace vantor
