#pragma once
// The item in the desktop's tray, with its menu. Main thread.

#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>

#include "platform/StatusItem.h"

namespace vantor {

class QtStatusItem final : public StatusItem {
public:
    void setMenu(const std::string& title, std::vector<MenuEntry> entries) override;
    void setTitle(std::size_t position, const std::string& title) override;
    [[nodiscard]] bool available() const override;

private:
    QMenu menu_;
    QSystemTrayIcon icon_;
};

}  // namespace vantor
