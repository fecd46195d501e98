#include "platform/linux/services/ReducedMotion.h"

#include <QtCore/QCoreApplication>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusVariant>
#include <array>
#include <utility>

namespace vantor {

namespace {

constexpr int patience = 2000;  // milliseconds

struct Setting {
    const char* space;
    const char* key;
};

constexpr std::array<Setting, 2> settingsOfDesktops{
    {{"org.gnome.desktop.interface", "enable-animations"}, {"org.kde.kdeglobals.KDE", "AnimationDurationFactor"}}};

// The portal wraps its answer once more than its signature says.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

// One after the other: a desktop has one of them.
void ask(std::size_t index, std::function<void(bool)> answer) {
    if (index >= settingsOfDesktops.size()) return;
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    call << QString::fromLatin1(settingsOfDesktops[index].space) << QString::fromLatin1(settingsOfDesktops[index].key);
    auto* const reply = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, patience), qApp);
    QObject::connect(
        reply, &QDBusPendingCallWatcher::finished, reply, [reply, index, answer = std::move(answer)]() mutable {
            reply->deleteLater();
            const QDBusPendingReply<QDBusVariant> read = *reply;
            const auto reduced = read.isError() ? std::nullopt : reducedMotionIn(unwrapped(read.value().variant()));
            if (reduced)
                answer(*reduced);
            else
                ask(index + 1, std::move(answer));
        });
}

}  // namespace

std::optional<bool> reducedMotionIn(const QVariant& portalValue) {
    if (portalValue.typeId() == QMetaType::Bool) return !portalValue.toBool();
    bool isNumber = false;
    const double factor = portalValue.toDouble(&isNumber);
    return isNumber ? std::optional(factor == 0) : std::nullopt;
}

void askReducedMotion(std::function<void(bool)> answer) {
    if (QDBusConnection::sessionBus().isConnected()) ask(0, std::move(answer));
}

}  // namespace vantor
