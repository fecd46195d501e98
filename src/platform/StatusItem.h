#pragma once
// The item in the system's status bar and its menu. Main thread.

#include <functional>
#include <string>
#include <vector>

namespace vantor {

struct MenuEntry {
    enum class Kind { action, separator };
    Kind kind = Kind::action;
    std::string title;
    bool enabled = true;
    std::function<void()> action;
    std::vector<MenuEntry> submenu;
};

class StatusItem {
public:
    virtual ~StatusItem() = default;
    virtual void setMenu(const std::string& title, std::vector<MenuEntry> entries) = 0;
    // Retitles the entry at this position of the menu, and says whether it can be chosen.
    virtual void setEntry(std::size_t position, const std::string& title, bool enabled) = 0;
    // False where the desktop has no status bar.
    [[nodiscard]] virtual bool available() const = 0;
};

}  // namespace vantor
