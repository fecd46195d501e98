#pragma once
// The layouts of the machine's XKB list, each with its variants. Plain values, any thread.

#include <string>
#include <vector>

namespace vantor::sweep {

struct LayoutName {
    std::string layout;
    std::string variant;  // empty for the layout itself
    std::string option;   // such as "ctrl:swapcaps"; mostly empty

    bool operator==(const LayoutName&) const = default;
    // "de(neo)", "de + ctrl:swapcaps"
    [[nodiscard]] std::string text() const;
};

// In the order of the list (xkeyboard-config, rules/evdev.lst), the layout before its variants. Empty when the list
// cannot be read.
[[nodiscard]] std::vector<LayoutName> machinesLayouts();
[[nodiscard]] bool isInstalled(const LayoutName& name);
// A dozen and a few that differ in what makes typing hard.
[[nodiscard]] std::vector<LayoutName> chosenLayouts();
// A few layouts, each with every option of the list.
[[nodiscard]] std::vector<LayoutName> layoutsWithOptions();
// "de" stands for that layout alone, "de(*)" for its variants too.
[[nodiscard]] bool matches(const LayoutName& name, const std::vector<std::string>& patterns);

}  // namespace vantor::sweep
