#pragma once
// The item in the system's status bar, made with its first menu. Main thread, after the application object.

#include <memory>

#include "platform/StatusItem.h"

namespace vantor {

class StatusBarItem final : public StatusItem {
public:
    StatusBarItem();
    ~StatusBarItem() override;

    void setMenu(const std::string& title, std::vector<MenuEntry> entries) override;
    void setEntry(std::size_t position, const std::string& title, bool enabled) override;
    [[nodiscard]] bool available() const override { return true; }

private:
    struct Item;

    void makeItem();

    std::unique_ptr<Item> item_;
};

}  // namespace vantor
