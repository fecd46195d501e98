#pragma once
// The item in the desktop's tray, with its menu. Main thread.

#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>
#include <memory>

#include "platform/StatusItem.h"

namespace vantor {

class QtStatusItem final : public StatusItem {
public:
    QtStatusItem();

    void setMenu(const std::string& title, std::vector<MenuEntry> entries) override;
    void setTitle(std::size_t position, const std::string& title) override;
    [[nodiscard]] bool available() const override;

private:
    std::unique_ptr<QMenu> menu_;
    QSystemTrayIcon icon_;
};

}  // namespace vantor
