#pragma once
// A status item that keeps its menu, and presses an entry on request.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/StatusItem.h"

namespace vantor {

class FakeStatusItem final : public StatusItem {
public:
    void setMenu(const std::string&, std::vector<MenuEntry> entries) override { menu = std::move(entries); }
    void setEntry(std::size_t position, const std::string& title, bool enabled) override {
        if (position >= menu.size()) return;  // before the first menu
        menu[position].title = title;
        menu[position].enabled = enabled;
    }
    [[nodiscard]] bool available() const override { return true; }

    // The titles in order; a separator is "-".
    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> found;
        for (const MenuEntry& entry : menu)
            found.push_back(entry.kind == MenuEntry::Kind::separator ? "-" : entry.title);
        return found;
    }
    void press(std::size_t position) { menu.at(position).action(); }

    std::vector<MenuEntry> menu;
};

}  // namespace vantor
