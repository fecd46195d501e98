#pragma once
// The item in the desktop's tray, with its menu. A status bar that comes late, or again, finds it. Main thread.

#include <QtDBus/QDBusServiceWatcher>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>

#include "platform/StatusItem.h"

namespace vantor {

class TrayStatusItem final : public StatusItem {
public:
    // Whether the display has a tray of the older kind, which is not on the bus.
    using DisplayTray = std::function<bool()>;

    // Without a word about the display such a tray is supposed: then a status bar must be on the bus before the item.
    explicit TrayStatusItem(DisplayTray displayTray = [] { return true; });

    void setMenu(const std::string& title, std::vector<MenuEntry> entries) override;
    void setEntry(std::size_t position, const std::string& title, bool enabled) override;
    [[nodiscard]] bool available() const override;

private:
    void showWhereThereIsATray();

    DisplayTray displayTray_;
    QDBusServiceWatcher bar_;
    QString title_;
    std::unique_ptr<QMenu> menu_;
    std::optional<QSystemTrayIcon> icon_;
};

}  // namespace vantor
