// The wish for reduced motion, asked of a settings portal on the session bus. Runs in demo/private_desktop.sh.

#include "ComesTrue.h"
#include "platform/linux/services/ReducedMotion.h"

#include <gmock/gmock.h>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <QtWidgets/QApplication>
#include <map>
#include <string>

namespace vantor {
namespace {

using testing::ElementsAre;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

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
        const std::string key = message.arguments().value(1).toString().toStdString();
        asked.push_back(message.member().toStdString() + " " + message.arguments().value(0).toString().toStdString() +
                        " " + key);
        const auto found = settings.find(key);
        // Its interface says one variant, and every portal wraps the value twice.
        return connection.send(
            found == settings.end()
                ? message.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), QString())
                : message.createReply(
                      QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(found->second))))));
    }

    std::map<std::string, QVariant> settings;
    std::vector<std::string> asked;

private:
    QDBusConnection bus_;
};

class ReducedMotionTest : public testing::Test {
protected:
    std::vector<bool> ask(std::size_t expectedQuestions) {
        portal.asked.clear();
        std::vector<bool> answers;
        askReducedMotion([&answers](bool reduced) { answers.push_back(reduced); });
        EXPECT_THAT(answers, ElementsAre()) << "it does not wait for the bus";
        EXPECT_TRUE(comesTrue([&] { return portal.asked.size() >= expectedQuestions; }));
        // Replies come in order: when this one is there, the last answer is too.
        bool over = false;
        auto last = QDBusMessage::createMethodCall(
            portalName, portalPath, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Last"));
        QDBusPendingCallWatcher watcher(QDBusConnection::sessionBus().asyncCall(last));
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &watcher, [&over] { over = true; });
        EXPECT_TRUE(comesTrue([&] { return over; }));
        portal.asked.pop_back();
        QApplication::processEvents();
        return answers;
    }

    StandInPortal portal;
};

const std::string gnome = "Read org.gnome.desktop.interface enable-animations";
const std::string kde = "Read org.kde.kdeglobals.KDE AnimationDurationFactor";

TEST_F(ReducedMotionTest, AnimationsThatAreOffAreTheWishForLessMotion) {
    portal.settings["enable-animations"] = false;
    EXPECT_THAT(ask(1), ElementsAre(true));
    EXPECT_THAT(portal.asked, ElementsAre(gnome));
    portal.settings["enable-animations"] = true;
    EXPECT_THAT(ask(1), ElementsAre(false));
}

TEST_F(ReducedMotionTest, TheOtherDesktopsFactorIsAskedWhereTheFirstSettingIsUnknown) {
    portal.settings["AnimationDurationFactor"] = QStringLiteral("0");
    EXPECT_THAT(ask(2), ElementsAre(true));
    EXPECT_THAT(portal.asked, ElementsAre(gnome, kde));
    portal.settings["AnimationDurationFactor"] = QStringLiteral("0.5");
    EXPECT_THAT(ask(2), ElementsAre(false));
    portal.settings["enable-animations"] = QStringLiteral("of another type");
    portal.settings["AnimationDurationFactor"] = QStringLiteral("0");
    EXPECT_THAT(ask(2), ElementsAre(true));
}

TEST_F(ReducedMotionTest, WithoutASettingNothingIsAnswered) {
    EXPECT_THAT(ask(2), ElementsAre());
    EXPECT_THAT(portal.asked, ElementsAre(gnome, kde));
}

}  // namespace
}  // namespace vantor
