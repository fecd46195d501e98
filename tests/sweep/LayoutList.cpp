#include "sweep/LayoutList.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

namespace vantor::sweep {

namespace {

struct Entry {
    std::string name;
    std::string next;  // the word behind it
};

std::vector<Entry> entriesOf(const std::string& wanted) {
    std::ifstream list("/usr/share/X11/xkb/rules/evdev.lst");
    std::vector<Entry> entries;
    std::string section;
    for (std::string line; std::getline(list, line);) {
        std::istringstream words(line);
        std::string first;
        std::string next;
        words >> first >> next;
        if (first == "!") {
            section = next;
        } else if (section == wanted && !first.empty()) {
            entries.push_back({first, next});
        }
    }
    return entries;
}

}  // namespace

std::string LayoutName::text() const {
    std::string out = variant.empty() ? layout : layout + '(' + variant + ')';
    return option.empty() ? out : out + " + " + option;
}

std::vector<LayoutName> machinesLayouts() {
    const auto variants = entriesOf("variant");
    std::vector<LayoutName> all;
    for (const Entry& layout : entriesOf("layout")) {
        all.push_back({layout.name, {}, {}});
        for (const Entry& variant : variants)
            if (variant.next == layout.name + ':') all.push_back({layout.name, variant.name, {}});
    }
    return all;
}

std::vector<LayoutName> layoutsWithOptions() {
    std::vector<LayoutName> all;
    for (const char* layout : {"us", "de", "fr"})
        for (const Entry& option : entriesOf("option"))
            // Those without a colon are the headings of groups.
            if (option.name.find(':') != std::string::npos) all.push_back({layout, {}, option.name});
    return all;
}

bool isInstalled(const LayoutName& name) {
    return std::filesystem::exists("/usr/share/X11/xkb/symbols/" + name.layout);
}

// Chosen for variety: de(T3) for the latches that Shift and AltGr are beside each other.
std::vector<LayoutName> chosenLayouts() {
    constexpr std::array<std::pair<const char*, const char*>, 21> chosen = {{
        {"us", ""},       {"us", "dvorak"}, {"us", "intl"}, {"de", ""}, {"de", "neo"},    {"de", "T3"},     {"pl", ""},
        {"fr", "azerty"}, {"fr", "bepo"},   {"ru", ""},     {"gr", ""}, {"jp", ""},       {"in", ""},       {"il", ""},
        {"ara", ""},      {"ch", ""},       {"br", ""},     {"tr", ""}, {"lv", "modern"}, {"ca", "multix"}, {"th", ""},
    }};
    std::vector<LayoutName> layouts;
    for (const auto& [layout, variant] : chosen) layouts.push_back({layout, variant, {}});
    return layouts;
}

bool matches(const LayoutName& name, const std::vector<std::string>& patterns) {
    return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
        return pattern == name.text() || pattern == name.option || pattern == name.layout + "(*)";
    });
}

}  // namespace vantor::sweep
