#pragma once
// Which tab of the main window is selected. One instance for all views; not persisted. Main thread.

#include <array>
#include <string>
#include <string_view>

#include "base/Notice.h"

namespace vantor {

struct TabEntry {
    std::string_view image;
    std::string_view text;
};

// By position, from the left. The image is named without its ".selected".
inline constexpr std::array<TabEntry, 7> tabEntries{{{"home", "Home"},
                                                     {"timer", "Timers"},
                                                     {"translator", "Translator"},
                                                     {"bestiary", "Bestiary"},
                                                     {"globe", "Internet"},
                                                     {"support", "Support"},
                                                     {"options", "Settings"}}};

// Which content is shown for a selection: anything that is no position shows Home.
[[nodiscard]] constexpr std::size_t shownTab(int selected) {
    return selected >= 1 && selected < static_cast<int>(tabEntries.size()) ? static_cast<std::size_t>(selected) : 0;
}

class Tabs {
public:
    [[nodiscard]] int selected() const { return selected_; }
    [[nodiscard]] const std::string& title() const { return title_; }

    void select(std::size_t position) {
        selected_ = static_cast<int>(position);
        title_ = tabEntries.at(position).text;
        changed.announce();
    }

    Notice changed;

private:
    int selected_ = 0;
    std::string title_{tabEntries[0].text};
};

}  // namespace vantor
