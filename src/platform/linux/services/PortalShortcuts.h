#pragma once
// Shortcuts that the desktop listens for, whoever has the keyboard: org.freedesktop.portal.GlobalShortcuts, which asks
// the player once which keys they are. Without such a portal nothing is said and nothing happens. Main thread.

#include <QtCore/QObject>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusObjectPath>
#include <functional>
#include <string>
#include <vector>

#include "platform/KeyMonitors.h"

class QDBusMessage;

namespace vantor {

class PortalShortcuts final : public QObject {
    Q_OBJECT

public:
    // The portal's name on the bus is another one in tests only.
    PortalShortcuts(std::vector<DesktopShortcut> shortcuts, std::function<void(const std::string& id)> activated,
                    QString portal = portalName());
    ~PortalShortcuts() override;
    PortalShortcuts(const PortalShortcuts&) = delete;
    PortalShortcuts& operator=(const PortalShortcuts&) = delete;

    [[nodiscard]] static QString portalName();

private Q_SLOTS:
    void takeSession(uint response, const QVariantMap& results);
    void handleActivation(const QDBusObjectPath& session, const QString& id, qulonglong time,
                          const QVariantMap& options);

private:
    void createSession();
    // The answer to a request comes as a signal of an object whose name is known before.
    [[nodiscard]] QVariantMap expecting(const QString& token, const char* slot);
    [[nodiscard]] QDBusMessage callOf(const QString& interface, const QString& member) const;

    std::vector<DesktopShortcut> shortcuts_;
    std::function<void(const std::string& id)> activated_;
    QString portal_;
    QString connectionName_;
    QDBusConnection bus_;
    QString session_;
};

// Whether there is such a portal, which running this may start.
[[nodiscard]] bool hasShortcutPortal(const QString& portal = PortalShortcuts::portalName());

}  // namespace vantor
