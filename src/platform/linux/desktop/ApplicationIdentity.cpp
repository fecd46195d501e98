#include "platform/linux/desktop/ApplicationIdentity.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vantor {
namespace {

struct KnownClass {
    std::string_view windowClass;  // in small letters
    const char* identifier;
};

// Wine sets the class to the program's file name, Steam's Proton to "steam_app_" and the number in its shop.
constexpr std::array knownClasses{
    KnownClass{"gw2-64.exe", gameIdentifier},
    KnownClass{"gw2.exe", gameIdentifier},
    KnownClass{"guild wars 2", gameIdentifier},
    KnownClass{"guildwars2", gameIdentifier},
    KnownClass{"steam_app_1284210", gameIdentifier},
    KnownClass{"geforcenow", streamingIdentifier},
    KnownClass{"geforcenow.exe", streamingIdentifier},
    KnownClass{"geforce now", streamingIdentifier},
    KnownClass{"com.nvidia.geforcenow", streamingIdentifier},
    KnownClass{streamingIdentifier, streamingIdentifier},
    KnownClass{"vantor", ownIdentifier},
    KnownClass{"orvendel.vantor", ownIdentifier},
};

struct KnownName {
    std::string_view identifier;
    const char* name;
};

constexpr std::array knownNames{
    KnownName{gameIdentifier, "Guild Wars 2"},
    KnownName{ownIdentifier, "Vantor"},
};

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    return small;
}

const char* knownIdentifier(const std::string& part) {
    const auto wanted = inSmallLetters(part);
    const auto* found = std::find_if(knownClasses.begin(), knownClasses.end(),
                                     [&](const auto& row) { return row.windowClass == wanted; });
    return found == knownClasses.end() ? nullptr : found->identifier;
}

}  // namespace

std::string applicationIdentifier(const WindowClass& windowClass, const DesktopEntryLookup& entries) {
    // Older Wine puts "Wine" into one of the two parts, so each is asked, the more telling class first.
    const std::array parts{&windowClass.name, &windowClass.instance};
    for (const auto* part : parts)
        if (const auto* known = knownIdentifier(*part)) return known;
    for (const auto* part : parts)
        if (!part->empty())
            if (auto entry = entries(*part)) return entry->id;
    return windowClass.name.empty() ? windowClass.instance : windowClass.name;
}

std::optional<std::string> applicationDisplayName(const std::string& identifier, const DesktopEntryLookup& entries) {
    for (const auto& row : knownNames)
        if (row.identifier == identifier) return row.name;
    if (identifier.empty()) return std::nullopt;
    auto entry = entries(identifier);
    if (!entry || entry->name.empty()) return std::nullopt;
    return std::move(entry->name);
}

}  // namespace vantor
