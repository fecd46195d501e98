#pragma once
// The layouts of the machine's XKB list, each with its variants. Plain values, any thread; and how the server that
// DISPLAY names is given one.

#include <QtCore/QProcess>
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace vantor::sweep {

struct LayoutName {
    std::string layout;
    std::string variant;  // empty for the layout itself
    std::string option;   // such as "ctrl:swapcaps"; mostly empty

    // "de(neo)", "de + ctrl:swapcaps"
    [[nodiscard]] std::string text() const {
        const std::string out = variant.empty() ? layout : layout + '(' + variant + ')';
        return option.empty() ? out : out + " + " + option;
    }
    [[nodiscard]] bool isInstalled() const { return std::filesystem::exists("/usr/share/X11/xkb/symbols/" + layout); }
    // "de" stands for that layout alone, "de(*)" for its variants too.
    [[nodiscard]] bool matches(const std::vector<std::string>& patterns) const {
        return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
            return pattern == text() || pattern == option || pattern == layout + "(*)";
        });
    }
};

// A section of the list (xkeyboard-config, rules/evdev.lst): names, each with the word behind it. Empty when it cannot
// be read.
inline std::vector<std::pair<std::string, std::string>> listedUnder(const std::string& wanted) {
    std::ifstream list("/usr/share/X11/xkb/rules/evdev.lst");
    std::vector<std::pair<std::string, std::string>> entries;
    std::string section;
    for (std::string line; std::getline(list, line);) {
        std::istringstream words(line);
        std::string first;
        std::string next;
        words >> first >> next;
        if (first == "!")
            section = next;
        else if (section == wanted && !first.empty())
            entries.emplace_back(first, next);
    }
    return entries;
}

// In the order of the list, the layout before its variants.
inline std::vector<LayoutName> machinesLayouts() {
    const auto variants = listedUnder("variant");
    std::vector<LayoutName> all;
    for (const auto& [layout, description] : listedUnder("layout")) {
        all.push_back({layout, {}, {}});
        for (const auto& [variant, itsLayout] : variants)
            if (itsLayout == layout + ':') all.push_back({layout, variant, {}});
    }
    return all;
}

// A few layouts, each with every option of the list.
inline std::vector<LayoutName> layoutsWithOptions() {
    std::vector<LayoutName> all;
    for (const char* layout : {"us", "de", "fr"})
        for (const auto& [option, description] : listedUnder("option"))
            // Those without a colon are the headings of groups.
            if (option.find(':') != std::string::npos) all.push_back({layout, {}, option});
    return all;
}

// A score that differ in what makes typing hard: de(T3) for the latches that Shift and AltGr are beside each other.
inline std::vector<LayoutName> chosenLayouts() {
    return {
        {"us", "", ""},   {"us", "dvorak", ""}, {"us", "intl", ""},   {"de", "", ""},       {"de", "neo", ""},
        {"de", "T3", ""}, {"pl", "", ""},       {"fr", "azerty", ""}, {"fr", "bepo", ""},   {"ru", "", ""},
        {"gr", "", ""},   {"jp", "", ""},       {"in", "", ""},       {"il", "", ""},       {"ara", "", ""},
        {"ch", "", ""},   {"br", "", ""},       {"tr", "", ""},       {"lv", "modern", ""}, {"ca", "multix", ""},
        {"th", "", ""},
    };
}

// Lists with a comma between, as many variants as layouts.
[[nodiscard]] inline bool loadLayouts(const std::string& layouts, const std::string& variants,
                                      const std::string& option) {
    QProcess loader;
    loader.start(QStringLiteral("setxkbmap"),
                 {QStringLiteral("-rules"), QStringLiteral("evdev"), QStringLiteral("-model"), QStringLiteral("pc105"),
                  QStringLiteral("-layout"), QString::fromStdString(layouts), QStringLiteral("-variant"),
                  QString::fromStdString(variants), QStringLiteral("-option"), QString(), QStringLiteral("-option"),
                  QString::fromStdString(option)});
    return loader.waitForFinished(60000) && loader.exitStatus() == QProcess::NormalExit && loader.exitCode() == 0;
}

}  // namespace vantor::sweep
